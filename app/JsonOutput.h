#pragma once

#include "app/Output.h"

namespace convfile::app {

/// Indented JSON: one object for one file, an array of them for several.
class JsonOutput final : public Output {
public:
    JsonOutput(Sink& sink, std::size_t files) : sink_(sink), array_(files != 1) {}

    void Add(const Conversion& conversion) override;
    void End() override;

private:
    Sink& sink_;
    bool array_;
    bool first_ = true;
};

/// One compact object a line.
class JsonLinesOutput final : public Output {
public:
    explicit JsonLinesOutput(Sink& sink) : sink_(sink) {}

    void Add(const Conversion& conversion) override;

private:
    Sink& sink_;
};

} // namespace convfile::app
