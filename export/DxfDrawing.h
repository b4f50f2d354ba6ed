#pragma once

#include "export/Output.h"

namespace convfile::exports {

/// The plan as a drawing for CAD: DXF of AutoCAD R12, which every program reads. Metres; texts in
/// Windows-1252. Stations are blocks and points POINTs with their heights, each pair of places that
/// was sighted a line; names and codes are texts on layers of their own.
class DxfDrawing final : public Output {
public:
    explicit DxfDrawing(OutputBuffer& out) : out_(out) {}

    void Add(const Work& work) override;

private:
    OutputBuffer& out_;
};

} // namespace convfile::exports
