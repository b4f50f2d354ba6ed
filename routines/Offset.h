#pragma once

#include "routines/Reading.h"

/// An offset from a sighted point, metres: along the line of sight (horizontally), to the right of
/// it, and up.
struct Offset {
    double along;
    double lateral;
    double vertical;
};

/// The reading of the point that lies at an offset from a sighted one, unrounded. A sighting in
/// the second face (zenith angle of 200 or more) gives one in the second face. Without a lateral
/// offset the horizontal angle stays exactly as it is; where the point lies beside the instrument
/// itself, the turn is a right angle to the side of the offset.
Reading ReadingAtOffset(const Reading& reference, const Offset& offset);
