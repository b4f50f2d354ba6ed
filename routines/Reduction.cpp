#include "routines/Reduction.h"

#include "routines/Angles.h"
#include "routines/Numbers.h"
#include "routines/Trigonometry.h"

#include <cmath>

Reading ReadingFromReduced(double horizontalDistance, double heightDifference,
                           double horizontalAngle) {
    const double d = horizontalDistance;
    const double h = heightDifference;
    double zenith = 100;
    if (h != 0) {
        zenith = ArcTan(d / h) * kGonPerRadian;
        if (zenith < 0)
            zenith += 200;
    }
    // Straight down the arc tangent is -0.
    return {.slopeDistance = std::sqrt(d * d + h * h),
            .zenithAngle = zenith + 0.0,
            .horizontalAngle = horizontalAngle};
}

Reading RoundedReadingFromReduced(double horizontalDistance, double heightDifference,
                                  double horizontalAngle) {
    Reading reading = ReadingFromReduced(horizontalDistance, heightDifference, horizontalAngle);
    reading.slopeDistance = ArrotondatoAtDec(reading.slopeDistance, 3);
    reading.zenithAngle = ArrotondatoAtDec(reading.zenithAngle, 4);
    return reading;
}
