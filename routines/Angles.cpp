#include "routines/Angles.h"

#include "host/NoValue.h"
#include "routines/Trigonometry.h"

#include <cmath>

namespace {

constexpr double kTurn = 400;

bool IsAngle(double angle) {
    return IsPresent(angle) && std::isfinite(angle);
}

} // namespace

double LimiteAng0_400(double angle) {
    if (!IsAngle(angle))
        return angle;
    double limited = std::fmod(angle, kTurn);
    if (limited < 0)
        limited += kTurn;
    // A tiny negative angle rounds up to a whole turn; a whole turn back leaves -0.
    return limited < kTurn ? limited + 0.0 : 0;
}

double LimiteAng200_200(double angle) {
    if (!IsAngle(angle))
        return angle;
    const double limited = std::fmod(angle, kTurn);
    if (limited > kTurn / 2)
        return limited - kTurn;
    return limited <= -kTurn / 2 ? limited + kTurn : limited;
}

double AngoloDaAsseRifer(double east, double north) {
    return LimiteAng0_400(ArcTan2(east, north) * kGonPerRadian);
}
