#pragma once

/// The polar reading that a reduced distance and a height difference stand for.
struct PolarReading {
    double slopeDistance; ///< metres
    double zenithAngle;   ///< gon, 0 to 200
};

/// Slope distance and zenith angle from a horizontal distance D and a height difference h, both
/// in metres: V = 100 where h is exactly 0, otherwise atan(D / h) in gon, plus 200 where negative;
/// S = sqrt(D D + h h), never hypot, so that every machine gives the same digits. Nothing is
/// rounded and nothing is asked about the values.
PolarReading PolarFromReduced(double horizontalDistance, double heightDifference);

/// The same with S rounded to millimetres and V to four decimals, as most formats store it.
PolarReading RoundedPolarFromReduced(double horizontalDistance, double heightDifference);
