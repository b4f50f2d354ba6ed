#pragma once

#include "app/Output.h"

namespace convfile::app {

/// One line a file: how much was converted, how much of it lacks a measurement; below it the
/// messages that the host would have shown.
class SummaryOutput final : public Output {
public:
    explicit SummaryOutput(Sink& sink) : sink_(sink) {}

    void Add(const Conversion& conversion) override;

private:
    Sink& sink_;
};

/// The summary, then everything in columns.
class TableOutput final : public Output {
public:
    explicit TableOutput(Sink& sink) : sink_(sink) {}

    void Add(const Conversion& conversion) override;

private:
    Sink& sink_;
    bool first_ = true;
};

} // namespace convfile::app
