#include "routines/Reduction.h"

#include "routines/Angles.h"
#include "routines/Numbers.h"
#include "routines/Trigonometry.h"

#include <cmath>

PolarReading PolarFromReduced(double horizontalDistance, double heightDifference) {
    const double d = horizontalDistance;
    const double h = heightDifference;
    double zenith = 100;
    if (h != 0) {
        zenith = ArcTan(d / h) * kGonPerRadian;
        if (zenith < 0)
            zenith += 200;
    }
    // Straight down the arc tangent is -0.
    return {.slopeDistance = std::sqrt(d * d + h * h), .zenithAngle = zenith + 0.0};
}

PolarReading RoundedPolarFromReduced(double horizontalDistance, double heightDifference) {
    const PolarReading exact = PolarFromReduced(horizontalDistance, heightDifference);
    return {.slopeDistance = ArrotondatoAtDec(exact.slopeDistance, 3),
            .zenithAngle = ArrotondatoAtDec(exact.zenithAngle, 4)};
}
