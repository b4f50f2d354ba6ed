#pragma once

#include "export/Output.h"

namespace convfile::exports {

/// The plan as a picture for the screen and the wall: SVG, north up, one scale, with a scale bar.
/// Names stand beside their marks where there is room, and show when one points at a mark.
class SvgDrawing final : public Output {
public:
    explicit SvgDrawing(OutputBuffer& out) : out_(out) {}

    void Add(const Work& work) override;

private:
    OutputBuffer& out_;
};

} // namespace convfile::exports
