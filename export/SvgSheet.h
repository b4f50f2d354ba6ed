#pragma once

#include "export/Drawing.h"

#include <string_view>

namespace convfile::exports {

/// How a drawing lies on its sheet: in pixels from the upper left corner, of which there are so
/// many that typical neighbours have room for their names.
class SvgSheet {
public:
    /// `title` is written above it, in UTF-8.
    SvgSheet(const Drawing& drawing, std::string_view title);

    double X(double east) const { return (east - left_) * scale_; }
    double Y(double north) const;
    double Width() const { return width_; }
    double Height() const { return height_; }
    /// Pixels in a metre.
    double Scale() const { return scale_; }

    static constexpr double kHead = 64; ///< above: what is drawn, and where north is
    static constexpr double kFoot = 56; ///< below: scale and legend
    static constexpr double kTitleSize = 16;
    static constexpr double kBold = 1.08; ///< how much wider bold letters are

private:
    double scale_ = 1;
    double width_ = 0;
    double height_ = 0;
    double left_ = 0; // of the sheet, metres east
    double top_ = 0;  // of what is below the head, metres north
};

inline double SvgSheet::Y(double north) const {
    return (top_ - north) * scale_ + kHead;
}

} // namespace convfile::exports
