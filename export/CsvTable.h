#pragma once

#include "export/Output.h"

namespace convfile::exports {

/// The field book as comma-separated values: a row for every observation, as it was read.
class CsvTable final : public Output {
public:
    explicit CsvTable(OutputBuffer& out);

    void Add(const Work& work) override;

private:
    OutputBuffer& out_;
};

} // namespace convfile::exports
