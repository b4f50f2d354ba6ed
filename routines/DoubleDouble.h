#pragma once

#include <cfloat>
#include <cmath>

static_assert(FLT_EVAL_METHOD == 0 && FLT_RADIX == 2 && DBL_MANT_DIG == 53,
              "double arithmetic is exact to the last of its 53 bits, no more and no less");

namespace convfile {

/// A number as the sum of two doubles, the second at most half a unit in the last place of the
/// first: 106 bits, and nothing but additions, multiplications, divisions and square roots of
/// doubles to work with it, which give the same bits on every machine. No fused multiply-add, on
/// purpose: it is slow where the processor lacks it.
///
/// Each operation is right to about 2^-103 of its result, a sum or difference to that of its larger
/// part, as long as nothing in it leaves the range from 2^-900 to 2^900.
struct DoubleDouble {
    double high = 0;
    double low = 0;

    constexpr DoubleDouble() = default;
    constexpr DoubleDouble(double number) : high(number) {} // NOLINT: every double is one
    constexpr DoubleDouble(double first, double second) : high(first), low(second) {}
};

/// a + b without loss; a must not be the smaller one.
constexpr DoubleDouble SumOfOrdered(double a, double b) {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

/// a + b without loss.
constexpr DoubleDouble ExactSum(double a, double b) {
    const double sum = a + b;
    const double partOfB = sum - a;
    return {sum, (a - (sum - partOfB)) + (b - partOfB)};
}

/// a x b without loss: both are cut into halves, whose products fit a double.
constexpr DoubleDouble ExactProduct(double a, double b) {
    constexpr double kCut = 0x1p27 + 1;
    const double aHigh = kCut * a - (kCut * a - a);
    const double bHigh = kCut * b - (kCut * b - b);
    const double aLow = a - aHigh;
    const double bLow = b - bHigh;
    const double product = a * b;
    return {product, ((aHigh * bHigh - product) + aHigh * bLow + aLow * bHigh) + aLow * bLow};
}

constexpr DoubleDouble operator-(DoubleDouble a) {
    return {-a.high, -a.low};
}

constexpr DoubleDouble operator+(DoubleDouble a, DoubleDouble b) {
    const DoubleDouble sum = ExactSum(a.high, b.high);
    return SumOfOrdered(sum.high, sum.low + (a.low + b.low));
}

constexpr DoubleDouble operator+(DoubleDouble a, double b) {
    const DoubleDouble sum = ExactSum(a.high, b);
    return SumOfOrdered(sum.high, sum.low + a.low);
}

constexpr DoubleDouble operator-(DoubleDouble a, DoubleDouble b) {
    return a + -b;
}

constexpr DoubleDouble operator*(DoubleDouble a, DoubleDouble b) {
    const DoubleDouble product = ExactProduct(a.high, b.high);
    return SumOfOrdered(product.high, product.low + (a.high * b.low + a.low * b.high));
}

constexpr DoubleDouble operator*(DoubleDouble a, double b) {
    const DoubleDouble product = ExactProduct(a.high, b);
    return SumOfOrdered(product.high, product.low + a.low * b);
}

constexpr DoubleDouble operator/(DoubleDouble a, DoubleDouble b) {
    const double quotient = a.high / b.high;
    const DoubleDouble product = ExactProduct(quotient, b.high);
    const double rest = ((a.high - product.high) - product.low) + (a.low - quotient * b.low);
    return SumOfOrdered(quotient, rest / b.high);
}

/// The square root; of 0 it is 0.
inline DoubleDouble SquareRoot(DoubleDouble a) {
    if (a.high <= 0)
        return 0;
    const double root = std::sqrt(a.high);
    const DoubleDouble rest = a - ExactProduct(root, root);
    return SumOfOrdered(root, rest.high / (2 * root));
}

} // namespace convfile
