#pragma once

#include "export/Work.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace convfile::exports {

/// A job as the plan sees it: which records are one place, and what was sighted from where.

/// What one or more records name; a record without a name is a place of its own.
struct Place {
    std::string_view name = {};
    std::string_view code = {};   ///< the first that is not empty
    Coordinates coordinates = {}; ///< known ones: x and y are both there, or neither
    std::uint64_t line = 0;       ///< of the first record
    bool stoodOn = false;

    bool IsFixed() const { return IsPresent(coordinates.x); }
};

/// What was read towards another place: a sight, or the direction to it alone.
struct Sight {
    std::uint32_t place;
    bool directionOnly;
    double east; ///< in plan, where the circle's zero is north; of a direction: of length 1
    double north;
    double distance; ///< horizontal; 0 for a direction
    double rise;     ///< from the place stood on to the place sighted
};

struct Occupation {
    std::uint32_t place;
    std::uint32_t firstSight; ///< in Survey::sights, up to that of the next occupation
    std::uint32_t endSight;
    bool hasSights;     ///< not only directions
    double orientation; ///< azimuth less reading, gon; 0 where it is not given
};

struct Survey {
    std::vector<Place> places; ///< by first appearance
    std::vector<Occupation> occupations;
    std::vector<Sight> sights;

    std::span<const Sight> SightsOf(const Occupation& occupation) const {
        return std::span(sights).subspan(occupation.firstSight,
                                         occupation.endSight - occupation.firstSight);
    }
};

/// The first coordinates of each name that have both x and y.
using KnownPlaces = std::unordered_map<std::string_view, Coordinates>;
KnownPlaces KnownPlacesOf(const Work& work);

Survey SurveyOf(const Job& job, const KnownPlaces& known);

} // namespace convfile::exports
