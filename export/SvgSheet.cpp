#include "export/SvgSheet.h"

#include "export/SvgText.h"

#include <algorithm>
#include <cmath>

namespace convfile::exports {

namespace {

constexpr double kSpacing = 40;   // between neighbours, typically
constexpr double kSmallest = 640; // the longer side of what is drawn
constexpr double kLarge = 900;    // may be so long, and longer where there are many places
constexpr double kLargePerRoot = 50;
constexpr double kLargest = 3200;
constexpr double kBeside = 70; // around it, for the names of what lies at the edge
constexpr double kSmallestSheet = 480;
constexpr double kFewestMetres = 1; // a single place is drawn as if it were a metre
constexpr double kNorth = 80;       // what the arrow takes of the head

} // namespace

SvgSheet::SvgSheet(const Drawing& drawing, std::string_view title) {
    const double longer = std::max({drawing.box.Width(), drawing.box.Height(), kFewestMetres});
    const double many = std::sqrt(static_cast<double>(drawing.marks.size()));
    const double largest = std::clamp(kLargePerRoot * many, kLarge, kLargest);
    scale_ = std::clamp(longer * kSpacing / drawing.spacing, kSmallest, largest) / longer;
    // The middle of what is drawn is the middle of the sheet.
    const double width = drawing.box.Width() * scale_ + 2 * kBeside;
    const double height = drawing.box.Height() * scale_ + 2 * kBeside;
    const double head = std::min(kTitleSize * kBold * TextWidth(title) + kNorth, kLarge);
    width_ = std::ceil(std::max({width, head, kSmallestSheet}));
    height_ = std::ceil(std::max(height, kSmallestSheet / 2) + kHead + kFoot);
    if (!drawing.box.IsEmpty()) {
        const double middleEast = drawing.box.left + drawing.box.Width() / 2;
        const double middleNorth = drawing.box.bottom + drawing.box.Height() / 2;
        left_ = middleEast - width_ / 2 / scale_;
        top_ = middleNorth + (height_ - kHead - kFoot) / 2 / scale_;
    }
}

} // namespace convfile::exports
