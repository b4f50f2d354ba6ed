#pragma once

#include "views/Output.h"

namespace convfile::views {

/// What of a conversion is written: all that is known of it, or the field book alone, without what
/// tells how the file was read.
enum class JsonParts { All, FieldBook };

/// Indented JSON: one object for one file, an array of them for several.
class JsonOutput final : public Output {
public:
    JsonOutput(Sink& sink, std::size_t files, JsonParts parts = JsonParts::All)
        : Output(sink), parts_(parts), array_(files != 1) {}

    void End() override;

private:
    void Separate() override;
    void Write(const Conversion& conversion) override;

    JsonParts parts_;
    bool array_;
    bool first_ = true;
};

/// One compact object a line.
class JsonLinesOutput final : public Output {
public:
    using Output::Output;

private:
    void Write(const Conversion& conversion) override;
};

} // namespace convfile::views
