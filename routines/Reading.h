#pragma once

#include "host/NoValue.h"

/// What an instrument reads towards a target. Each value is the no-value marker where it was not
/// measured.
struct Reading {
    double slopeDistance = kNoValue;   ///< metres
    double zenithAngle = kNoValue;     ///< gon, 100 for the horizontal
    double horizontalAngle = kNoValue; ///< gon, clockwise
};

/// The reading with its slope distance absent where that was read as exactly 0: it was not
/// measured.
constexpr Reading WithoutZeroDistance(Reading reading) {
    if (reading.slopeDistance == 0)
        reading.slopeDistance = kNoValue;
    return reading;
}
