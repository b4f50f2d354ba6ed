#include "routines/Offset.h"

#include "routines/Angles.h"
#include "routines/Trigonometry.h"

#include <cmath>

namespace {

/// How far the line of sight turns for a lateral offset at a horizontal distance, gon.
double TurnFor(double lateral, double horizontal) {
    if (horizontal == 0)
        return std::copysign(100.0, lateral);
    return ArcTan(lateral / horizontal) * kGonPerRadian;
}

} // namespace

Reading ReadingAtOffset(const Reading& reference, const Offset& offset) {
    const double zenith = reference.zenithAngle * kRadiansPerGon;
    const double h = reference.slopeDistance * Sin(zenith) + offset.along;
    const double v = reference.slopeDistance * Cos(zenith) + offset.vertical;
    const double horizontal = std::sqrt(h * h + offset.lateral * offset.lateral);

    Reading moved = reference;
    moved.slopeDistance = std::sqrt(horizontal * horizontal + v * v);
    moved.zenithAngle = horizontal == 0 ? 100 : 100 - ArcTan(v / horizontal) * kGonPerRadian;
    if (reference.zenithAngle >= 200)
        moved.zenithAngle = 400 - moved.zenithAngle;
    if (offset.lateral != 0)
        moved.horizontalAngle =
            LimiteAng0_400(reference.horizontalAngle + TurnFor(offset.lateral, h));
    return moved;
}
