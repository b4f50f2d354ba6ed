#include "memory/Calculator.h"

#include "routines/Angles.h"
#include "routines/Reduction.h"

#include <cmath>

namespace convfile::memory {

namespace {

bool HasPlan(const Coordinates& place) {
    return IsPresent(place.x) && IsPresent(place.y);
}

} // namespace

std::optional<Reading> Calculator::Observe(const Coordinates& station, double instrumentHeight,
                                           const Coordinates& target, double targetHeight) const {
    if (!HasPlan(station) || !HasPlan(target))
        return std::nullopt;
    const double dx = target.x - station.x;
    const double dy = target.y - station.y;
    const double dz = ValueOrZero(target.z) + ValueOrZero(targetHeight) - ValueOrZero(station.z) -
                      ValueOrZero(instrumentHeight);
    const Reading reading =
        ReadingFromReduced(std::sqrt(dx * dx + dy * dy), dz, AngoloDaAsseRifer(dx, dy));
    if (!std::isfinite(reading.slopeDistance))
        return std::nullopt;
    return reading;
}

} // namespace convfile::memory
