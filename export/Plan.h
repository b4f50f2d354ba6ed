#pragma once

#include "export/Work.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace convfile::exports {

/// A place of the plan: where its group has it.
struct Placed {
    std::string_view name = {};
    std::string_view code = {};
    double east = 0; ///< metres, rounded to tenths of a millimetre, as are the following
    double north = 0;
    double height = kNoValue;
    std::uint32_t sights = 0; ///< from set-ups of the group
    double spread = kNoValue; ///< the farthest in plan that one of them is off; absent without any
    bool stoodOn = false;     ///< by any set-up of the job
    std::uint64_t line = 0;   ///< of its first record
};

/// Places that are known relative to each other.
struct Group {
    std::size_t job = 0;      ///< in Work::jobs
    std::uint32_t number = 1; ///< in the job, from 1
    bool fixed = false;       ///< at given coordinates; otherwise its first set-up is at 0, 0, 0
    std::size_t first = 0;    ///< its places in Plan::places, up to the end
    std::size_t end = 0;
};

/// A place stood on and one sighted from it, as they stand in Plan::places.
struct SightLine {
    std::size_t from = 0;
    std::size_t to = 0;
};

/// Where everything is, as far as the sights tell: a look at the work, not an adjustment.
struct Plan {
    std::vector<Placed> places; ///< by job, group and first appearance
    std::vector<Group> groups;
    std::vector<SightLine> lines; ///< one for each two places, whichever was stood on
};

/// Places set-ups one after another, always the first in the order of the file that can be: on a
/// place with a position, oriented by the others that it observes; or free, by least squares over
/// two or more places that it sights. It is not moved again; other places are the mean of the
/// sights to them. Where none can be placed, the first one on a place with given coordinates is
/// oriented by its circle, and where there is none, the first one starts a group of its own.
///
/// Takes time in proportion to the sights, but for places that very many set-ups of different
/// groups have in common. What is no finite number counts as absent.
Plan MakePlan(const Work& work);

} // namespace convfile::exports
