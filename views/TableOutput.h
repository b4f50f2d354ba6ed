#pragma once

#include "memory/Entity.h"
#include "views/Output.h"

#include <string>

namespace convfile::views {

/// One line a file: how much was converted, how much of it lacks a measurement; below it the
/// messages that the host would have shown.
class SummaryOutput final : public Output {
public:
    using Output::Output;

private:
    void Write(const Conversion& conversion) override;
};

/// The summary, then everything in columns.
class TableOutput final : public Output {
public:
    using Output::Output;

private:
    void Separate() override;
    void Write(const Conversion& conversion) override;

    bool first_ = true;
};

/// The names of the marks that are set, with a blank between them.
std::string ShownMarks(const memory::Marks& marks);

} // namespace convfile::views
