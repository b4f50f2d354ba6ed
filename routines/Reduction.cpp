#include "routines/Reduction.h"

#include "routines/Angles.h"
#include "routines/Numbers.h"

#include <cmath>

PolarReading PolarFromReduced(double horizontalDistance, double heightDifference) {
    const double d = horizontalDistance;
    const double h = heightDifference;
    double zenith = 100;
    if (h != 0) {
        zenith = std::atan(d / h) * kGonPerRadian;
        if (zenith < 0)
            zenith += 200;
    }
    // Straight down atan gives -0.
    return {.slopeDistance = std::sqrt(d * d + h * h), .zenithAngle = zenith + 0.0};
}

PolarReading RoundedPolarFromReduced(double horizontalDistance, double heightDifference) {
    const PolarReading exact = PolarFromReduced(horizontalDistance, heightDifference);
    return {.slopeDistance = ArrotondatoAtDec(exact.slopeDistance, 3),
            .zenithAngle = ArrotondatoAtDec(exact.zenithAngle, 4)};
}
