#pragma once

#include "host/CalcDsOr.h"
#include "memory/Entity.h"
#include "routines/Reading.h"

#include <optional>

namespace convfile::memory {

/// The calculator of the field book in memory.
class Calculator final : public CCalcDsOr {
public:
    /// What an instrument reads of a target from a station, both given by coordinates: the bearing,
    /// and slope distance and zenith angle between instrument and prism, unrounded. An absent
    /// height or z counts as 0; nothing where either lacks x or y.
    std::optional<Reading> Observe(const Coordinates& station, double instrumentHeight,
                                   const Coordinates& target, double targetHeight) const;
};

} // namespace convfile::memory
