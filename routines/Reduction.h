#pragma once

#include "routines/Reading.h"

/// The reading that a horizontal distance D and a height difference h stand for, both in metres:
/// zenith angle 100 where h is exactly 0, otherwise atan(D / h) in gon, plus 200 where negative;
/// slope distance sqrt(D D + h h), never hypot, so that every machine gives the same digits. The
/// horizontal angle goes along. Nothing is rounded and nothing is asked about the values.
Reading ReadingFromReduced(double horizontalDistance, double heightDifference,
                           double horizontalAngle = kNoValue);

/// The same with the slope distance rounded to millimetres and the zenith angle to four decimals,
/// as most formats store them.
Reading RoundedReadingFromReduced(double horizontalDistance, double heightDifference,
                                  double horizontalAngle = kNoValue);
