#pragma once

#include "export/Output.h"

namespace convfile::exports {

/// The plan as comma-separated values: a row for every station and point that can be placed.
class PointsTable final : public Output {
public:
    explicit PointsTable(OutputBuffer& out);

    void Add(const Work& work) override;

private:
    OutputBuffer& out_;
};

} // namespace convfile::exports
