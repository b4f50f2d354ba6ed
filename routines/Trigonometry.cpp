// All five functions work alike. An angle is split into a multiple of a sixty-fourth, whose sine,
// cosine or arc tangent stands in a table, and a rest of no more than half of that, for which few
// terms of the Taylor series are enough. They are first summed as doubles, which settles all but
// one result in a thousand; where two doubles are about equally near, they are summed again as
// double-doubles. (Terms below 2^-50 of the result need no more than a double then, either.)

#include "routines/Trigonometry.h"

#include "routines/DoubleDouble.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

namespace {

using convfile::DoubleDouble;
using convfile::ExactSum;
using convfile::SumOfOrdered;

constexpr DoubleDouble kHalfPi{0x1.921fb54442d18p+0, 0x1.1a62633145c07p-54};
constexpr DoubleDouble kPi{2 * kHalfPi.high, 2 * kHalfPi.low};

/// Of numbers below it, the higher powers are below half a unit in the last place.
constexpr double kTiny = 0x1p-54;

/// True where a sum that is right to 2^-63 of itself can only have one nearest double.
bool IsCertain(DoubleDouble sum) {
    const double doubt = 0x1p-63 * sum.high;
    return sum.high + (sum.low + doubt) == sum.high && sum.high + (sum.low - doubt) == sum.high;
}

// Tables

constexpr int kStepsOfOne = 64;

/// Of a number that is not negative and fits; which of two it is nearest to does not matter.
constexpr int ToWhole(double number) {
    return static_cast<int>(number + 0.5); // NOLINT(bugprone-incorrect-roundings)
}

struct SineAndCosine {
    DoubleDouble sine;
    DoubleDouble cosine;
};

/// 1 - x / (n (n + 1)) (1 - x / ((n + 2) (n + 3)) (1 - ...)): the Taylor series of sine and cosine.
constexpr DoubleDouble AlternatingSeries(DoubleDouble x, int n) {
    constexpr int kEnough = 26; // x is below 1
    DoubleDouble sum = 1;
    for (int i = n + kEnough; i >= n; i -= 2)
        sum = 1 - x / (i * (i + 1.0)) * sum;
    return sum;
}

/// Of the multiples of the step up to pi / 4.
constexpr auto kSines = [] {
    std::array<SineAndCosine, 51> table;
    for (std::size_t i = 0; i < table.size(); ++i) {
        const double angle = static_cast<double>(i) / kStepsOfOne;
        table[i].sine = angle * AlternatingSeries(angle * angle, 2);
        table[i].cosine = AlternatingSeries(angle * angle, 1);
    }
    return table;
}();

/// Of the multiples of the step up to 1, by Euler's series: with y = x x / (1 + x x),
/// x / (1 + x x) (1 + 2/3 y (1 + 4/5 y (1 + 6/7 y ...))), which no subtraction makes worse.
constexpr auto kArcTans = [] {
    std::array<DoubleDouble, kStepsOfOne + 1> table;
    for (std::size_t i = 0; i < table.size(); ++i) {
        const double x = static_cast<double>(i) / kStepsOfOne;
        const DoubleDouble y = DoubleDouble(x * x) / (1 + x * x);
        int enough = 1;
        for (double power = 1; power > 0x1p-110; power *= y.high)
            ++enough;
        DoubleDouble sum = 1;
        for (int n = enough; n > 0; --n)
            sum = 1 + y * (DoubleDouble(2.0 * n) / (2.0 * n + 1)) * sum;
        table[i] = DoubleDouble(x) / (1 + x * x) * sum;
    }
    return table;
}();

// Sine and cosine

/// Of a rest of the step, whose square is given: its sine less itself, as a part of it; and its
/// cosine less 1.
double SineSeries(double square) {
    return square * (-1.0 / 6 + square * (1.0 / 120 - square / 5040));
}
double CosineSeries(double square) {
    return square * (-1.0 / 2 + square * (1.0 / 24 - square / 720));
}

/// The same to the last bit of a double-double.
DoubleDouble SineSeries(DoubleDouble square) {
    constexpr DoubleDouble kCubic = DoubleDouble(-1) / 6;
    constexpr DoubleDouble kQuintic = DoubleDouble(1) / 120;
    const double x = square.high;
    const double small = x * (-1.0 / 5040 + x * (1.0 / 362880 - x / 39916800));
    return square * (kCubic + square * (kQuintic + small));
}
DoubleDouble CosineSeries(DoubleDouble square) {
    constexpr DoubleDouble kQuartic = DoubleDouble(1) / 24;
    const double x = square.high;
    const double small = x * (-1.0 / 720 + x * (1.0 / 40320 - x / 3628800));
    return square * (square * (kQuartic + small) + -0.5);
}

/// Sine or cosine of an angle from 0 to pi / 4.
double SineOrCosine(DoubleDouble angle, bool cosine) {
    const int step = ToWhole(angle.high * kStepsOfOne);
    const DoubleDouble t = angle + -static_cast<double>(step) / kStepsOfOne;
    const SineAndCosine& start = kSines[static_cast<std::size_t>(step)];
    const DoubleDouble along = cosine ? start.cosine : start.sine;
    const DoubleDouble across = cosine ? -start.sine : start.cosine;

    // along cos t + across sin t
    const DoubleDouble linear = across * t;
    const double square = t.high * t.high;
    const double small = along.high * CosineSeries(square) + linear.high * SineSeries(square);
    const DoubleDouble sum = ExactSum(along.high, linear.high);
    const DoubleDouble quick = SumOfOrdered(sum.high, sum.low + (along.low + linear.low + small));
    if (IsCertain(quick))
        return quick.high;
    const DoubleDouble exactSquare = t * t;
    return (along + (along * CosineSeries(exactSquare) + linear + linear * SineSeries(exactSquare)))
        .high;
}

/// An angle that is not negative, as a number of quarter turns (modulo 4) and a rest of at most
/// half of one to either side.
struct QuarterTurns {
    unsigned count;
    bool restIsNegative;
    DoubleDouble rest; ///< without its sign
};

/// 2 / pi in words of 32 bits, the point before the third; as many as the largest double asks for.
/// They are the first digits to the base 2^32, worked out once with 3000 bits and written down.
constexpr std::array<std::uint32_t, 40> kTwoByPi = {
    0,          0,          0xa2f9836e, 0x4e441529, 0xfc2757d1, 0xf534ddc0, 0xdb629599, 0x3c439041,
    0xfe5163ab, 0xdebbc561, 0xb7246e3a, 0x424dd2e0, 0x06492eea, 0x09d1921c, 0xfe1deb1c, 0xb129a73e,
    0xe88235f5, 0x2ebb4484, 0xe99c7026, 0xb45f7e41, 0x3991d639, 0x835339f4, 0x9c845f8b, 0xbdf9283b,
    0x1ff897ff, 0xde05980f, 0xef2f118b, 0x5a0a6d1f, 0x6d367ecf, 0x27cb09b7, 0x4f463f66, 0x9e5fea2d,
    0x7527bac7, 0xebe5f17b, 0x3d0739f7, 0x8a5292ea, 0x6bfb5fb1, 0x1f8d5d08, 0x56033046, 0xfc7b6bab};

/// angle x 2 / pi modulo 4, as a fixed-point number: 2 bits before the point, 254 behind. The angle
/// is mantissa x 2^exponent. Of 2 / pi the words whose product with the mantissa is a multiple of 4
/// are left out, and the eight next ones are multiplied: 170 bits behind the point are right, of
/// which at most 62 are zeros, since no double comes nearer to a multiple of pi / 2.
std::array<std::uint64_t, 4> InQuarterTurns(std::uint64_t mantissa, int exponent) {
    constexpr std::size_t kWords = 8;
    constexpr std::uint64_t kWord = 0xffffffff;
    const auto place = static_cast<unsigned>(exponent + 62);
    const std::uint32_t* const words = &kTwoByPi[place / 32];
    std::array<std::uint64_t, kWords> product; // modulo 2^256
    std::uint64_t carry = 0;
    for (std::size_t i = kWords; i-- > 0;) {
        const std::uint64_t sum = (mantissa & kWord) * words[i] + carry;
        product[i] = sum & kWord;
        carry = sum >> 32;
    }
    carry = 0;
    for (std::size_t i = kWords; i-- > 1;) {
        const std::uint64_t sum = (mantissa >> 32) * words[i] + product[i - 1] + carry;
        product[i - 1] = sum & kWord;
        carry = sum >> 32;
    }
    const unsigned shift = place % 32;
    std::array<std::uint64_t, 4> turns{};
    for (std::size_t i = 0; i < turns.size(); ++i) {
        const std::uint64_t next = i + 1 < turns.size() ? product[2 * i + 2] : 0;
        turns[i] =
            product[2 * i] << 32 << shift | product[2 * i + 1] << shift | next >> (32 - shift);
    }
    return turns;
}

constexpr double PowerOfTwo(int exponent) {
    return std::bit_cast<double>(static_cast<std::uint64_t>(exponent + 1023) << 52);
}

/// Of an angle above pi / 4, whatever it is.
QuarterTurns InManyQuarterTurns(double angle) {
    constexpr std::uint64_t kHiddenBit = std::uint64_t{1} << 52;
    const auto bits = std::bit_cast<std::uint64_t>(angle);
    std::array<std::uint64_t, 4> turns =
        InQuarterTurns((bits & (kHiddenBit - 1)) | kHiddenBit, static_cast<int>(bits >> 52) - 1075);

    // To the nearest whole number.
    constexpr std::uint64_t kHalf = std::uint64_t{1} << 61;
    QuarterTurns result{};
    result.count = static_cast<unsigned>((turns[0] + kHalf) >> 62);
    result.restIsNegative = (turns[0] & kHalf) != 0;
    if (result.restIsNegative) {
        for (std::uint64_t& word : turns)
            word = ~word; // one unit of 2^-254 less: nothing beside the 170 bits
    }
    turns[0] &= 2 * kHalf - 1;

    // The first 53 bits from the first that is set, and the 64 behind them.
    const std::size_t begin = turns[0] == 0 ? 1 : 0;
    const int zeros = std::countl_zero(turns[begin]);
    const auto shifted = [&](std::size_t i) {
        return turns[i] << zeros | turns[i + 1] >> 1 >> (63 - zeros);
    };
    const std::uint64_t first = shifted(begin);
    const double unit = PowerOfTwo(-51 - 64 * static_cast<int>(begin) - zeros);
    const DoubleDouble fraction = SumOfOrdered(
        static_cast<double>(first >> 11) * unit,
        static_cast<double>(first << 53 | shifted(begin + 1) >> 11) * (unit * 0x1p-64));
    result.rest = fraction * kHalfPi;
    return result;
}

/// The same, quicker for what is no more than a few hundred turns and not near to a whole number of
/// quarter turns: these are subtracted in three parts, of which the first two have so few bits that
/// nothing is lost.
QuarterTurns InQuarterTurns(double angle) {
    constexpr double kMost = 1000;
    constexpr double kNear = 0x1p-10;
    constexpr double kTwoByPiRounded = 0x1.45f306dc9c883p-1;
    constexpr std::array<double, 3> kHalfPiInParts = {0x1.921fb54442c00p+0, 0x1.18469898cc000p-44,
                                                      0x1.45c06e0e68948p-86};
    if (angle > kMost)
        return InManyQuarterTurns(angle);
    const int count = ToWhole(angle * kTwoByPiRounded);
    const double turns = count;
    const DoubleDouble parts =
        ExactSum(angle - turns * kHalfPiInParts[0], -turns * kHalfPiInParts[1]);
    const DoubleDouble rest = SumOfOrdered(parts.high, parts.low - turns * kHalfPiInParts[2]);
    if (std::fabs(rest.high) < kNear)
        return InManyQuarterTurns(angle);
    const bool negative = rest.high < 0;
    return {static_cast<unsigned>(count), negative, negative ? -rest : rest};
}

/// The sine of an angle and a number of quarter turns.
double SineAfter(unsigned quarterTurns, double angle) {
    QuarterTurns turns{};
    const double size = std::fabs(angle);
    if (size <= kHalfPi.high / 2)
        turns.rest = size;
    else
        turns = InQuarterTurns(size);
    const bool backwards = std::signbit(angle);
    const unsigned count = (backwards ? 0U - turns.count : turns.count) + quarterTurns;
    const bool restIsNegative = turns.restIsNegative != backwards;
    const bool cosine = count % 2 != 0;
    const double value = SineOrCosine(turns.rest, cosine);
    const bool lowerHalf = count % 4 >= 2;
    return lowerHalf != (restIsNegative && !cosine) ? -value : value;
}

// Arc tangent and arc cosine

/// Of a rest of the step, whose square is given: its arc tangent less itself, as a part of it.
double ArcTanSeries(double square) {
    return square * (-1.0 / 3 + square * (1.0 / 5 + square * (-1.0 / 7 + square / 9)));
}

/// The same to the last bit of a double-double.
DoubleDouble ArcTanSeries(DoubleDouble square) {
    constexpr DoubleDouble kThird = DoubleDouble(-1) / 3;
    constexpr DoubleDouble kFifth = DoubleDouble(1) / 5;
    constexpr DoubleDouble kSeventh = DoubleDouble(-1) / 7;
    const double x = square.high;
    const double small = x * (1.0 / 9 + x * (-1.0 / 11 + x * (1.0 / 13 - x / 15)));
    return square * (kThird + square * (kFifth + square * (kSeventh + small)));
}

/// A quotient as its first 26 bits and a rest that is right to 2^-77 of it; and as one double.
struct Quotient {
    double firstHalf;
    double rest;
    double high;
};

/// The first 26 bits of a number, whose product with as many or 27 others is exact.
double FirstHalf(double number) {
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(number) & ~std::uint64_t{0x7ffffff});
}

/// (y - c x) / (x + c y), where c has few bits: the products with halves are exact, and so is the
/// first difference, since neither part of it is more than twice the other.
Quotient TurnedBack(DoubleDouble y, DoubleDouble x, double c) {
    const double xHalf = FirstHalf(x.high);
    const double yHalf = FirstHalf(y.high);
    const DoubleDouble up = SumOfOrdered(y.high - c * xHalf, -c * (x.high - xHalf));
    const double upLow = up.low + (y.low - c * x.low);
    const DoubleDouble first = SumOfOrdered(x.high, c * yHalf);
    const DoubleDouble along =
        SumOfOrdered(first.high, first.low + (c * (y.high - yHalf) + (x.low + c * y.low)));

    const double inverse = 1 / (x.high + c * y.high);
    const double quotient = up.high * inverse;
    const double half = FirstHalf(quotient);
    const double alongHalf = FirstHalf(along.high);
    const double rest = ((up.high - half * alongHalf) - half * (along.high - alongHalf)) +
                        (upLow - half * along.low);
    return {half, rest * inverse, quotient};
}

/// The angle of the vector (x, y), or of (-x, y) where `behind`; x and y are not negative.
double Angle(DoubleDouble y, DoubleDouble x, bool behind) {
    const bool steep = y.high > x.high;
    if (steep)
        std::swap(x, y);

    // Turned back by a multiple of the step, whose tangent is c, it is the vector (x + c y, y - c
    // x). The step is chosen so that y is more than half of c x.
    const int step = static_cast<int>(y.high / x.high * kStepsOfOne + 0.4999);
    const double c = static_cast<double>(step) / kStepsOfOne;
    DoubleDouble start = kArcTans[static_cast<std::size_t>(step)];
    if (steep)
        start = kHalfPi - start;
    if (behind)
        start = kPi - start;
    const double sign = steep != behind ? -1 : 1;

    const Quotient t = TurnedBack(y, x, c);
    const double small = t.high * ArcTanSeries(t.high * t.high);
    const DoubleDouble sum = SumOfOrdered(start.high, sign * t.firstHalf);
    const DoubleDouble quick =
        SumOfOrdered(sum.high, sum.low + (start.low + sign * (t.rest + small)));
    if (IsCertain(quick))
        return quick.high;
    const DoubleDouble exact = (y - x * c) / (x + y * c);
    return (start + (exact + exact * ArcTanSeries(exact * exact)) * sign).high;
}

} // namespace

double Sin(double angle) {
    if (!std::isfinite(angle))
        return angle - angle;
    return std::fabs(angle) < kTiny ? angle : SineAfter(0, angle);
}

double Cos(double angle) {
    return std::isfinite(angle) ? SineAfter(1, angle) : angle - angle;
}

double ArcTan(double tangent) {
    return ArcTan2(tangent, 1);
}

double ArcTan2(double y, double x) {
    if (std::isnan(y) || std::isnan(x))
        return y + x;
    double up = std::fabs(y);
    double along = std::fabs(x);
    if (std::isinf(up) || std::isinf(along)) {
        up = std::isinf(up) ? 1 : 0;
        along = std::isinf(along) ? 1 : 0;
    } else if (up == 0 && along == 0) {
        along = 1;
    }
    const bool behind = std::signbit(x);
    if (!behind && up < along * kTiny)
        return std::copysign(up / along, y);

    // What is far from 1 is brought nearer, both alike, so that nothing overflows. (The lesser one
    // may become 0 only where it is nothing beside a right angle.)
    constexpr double kMuch = 0x1p400;
    const double most = std::max(up, along);
    if (most > kMuch || most < 1 / kMuch) {
        const double factor = most > kMuch ? 0x1p-600 : 0x1p600;
        up *= factor;
        along *= factor;
    }
    return std::copysign(Angle(up, along, behind), y);
}

double ArcCos(double cosine) {
    if (!(std::fabs(cosine) <= 1))
        return std::isnan(cosine) ? cosine : std::numeric_limits<double>::quiet_NaN();
    const DoubleDouble sine = SquareRoot(ExactSum(1, cosine) * ExactSum(1, -cosine));
    return Angle(sine, std::fabs(cosine), std::signbit(cosine));
}
