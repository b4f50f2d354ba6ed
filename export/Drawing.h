#pragma once

#include "export/Box.h"
#include "export/Plan.h"

#include <vector>

namespace convfile::exports {

/// A group on its sheet.
struct DrawnGroup {
    Group group;
    Box box; ///< around its places
};

/// The plan on one sheet, metres: groups at given coordinates stay there; every other one, which
/// has coordinates of its own alone, is shifted, not turned, to where it touches none.
struct Drawing {
    std::vector<Placed> marks; ///< those of the plan, moved; heights that are absent are 0
    std::vector<SightLine> lines;
    std::vector<DrawnGroup> groups;
    Box box;
    double spacing = 1; ///< how far apart places typically are: what texts have room for
};

Drawing MakeDrawing(const Work& work);

/// The largest number of 1, 2 or 5 times a power of ten that is not above the value, which is
/// positive and finite.
double RoundDown125(double value);

/// What a drawing without any place says.
inline constexpr std::string_view kNothingPlaced =
    "Nothing to draw: no sight with distance and both angles, and no coordinates";

} // namespace convfile::exports
