#pragma once

#include "routines/DoubleDouble.h"

/// The functions of Trigonometry.h at any argument, worked out to about 100 bits: what they fall
/// back on for the few results that fewer bits do not settle and for arguments out of the ordinary.
/// Beside them what their tables have in common with those of the quick way.
namespace convfile {

inline constexpr DoubleDouble kHalfPi{0x1.921fb54442d18p+0, 0x1.1a62633145c07p-54};
inline constexpr DoubleDouble kPi{2 * kHalfPi.high, 2 * kHalfPi.low};

/// 1 - x / (n (n + 1)) (1 - x / ((n + 2) (n + 3)) (1 - ...)): the Taylor series of sine and cosine.
constexpr DoubleDouble AlternatingSeries(DoubleDouble x, int n) {
    constexpr int kEnough = 26; // x is below 1
    DoubleDouble sum = 1;
    for (int i = n + kEnough; i >= n; i -= 2)
        sum = 1 - x / (i * (i + 1.0)) * sum;
    return sum;
}

/// The arc tangent of a number up to 1 with few bits, by Euler's series: with y = x x / (1 + x x),
/// x / (1 + x x) (1 + 2/3 y (1 + 4/5 y (1 + 6/7 y ...))), which no subtraction makes worse.
constexpr DoubleDouble ArcTanByEuler(double x) {
    const DoubleDouble y = DoubleDouble(x * x) / (1 + x * x);
    int enough = 1;
    for (double power = 1; power > 0x1p-110; power *= y.high)
        ++enough;
    DoubleDouble sum = 1;
    for (int n = enough; n > 0; --n)
        sum = 1 + y * (DoubleDouble(2.0 * n) / (2.0 * n + 1)) * sum;
    return DoubleDouble(x) / (1 + x * x) * sum;
}

[[gnu::cold, gnu::noinline]] double SinInFull(double angle);
[[gnu::cold, gnu::noinline]] double CosInFull(double angle);
[[gnu::cold, gnu::noinline]] double ArcTan2InFull(double y, double x);
[[gnu::cold, gnu::noinline]] double ArcCosInFull(double cosine);

} // namespace convfile
