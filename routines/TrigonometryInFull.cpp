// The multiples of a sixty-fourth have their sine, cosine or arc tangent in a table; for the rest
// of an angle or tangent, no more than half of that, few terms of the Taylor series are enough.
// They are summed as double-doubles. (Terms below 2^-50 of the result need no more than a double.)

#include "routines/TrigonometryInFull.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

namespace convfile {

namespace {

/// Of numbers below it, the higher powers are below half a unit in the last place.
constexpr double kTiny = 0x1p-54;

/// Of a number that is not negative and fits; which of two it is nearest to does not matter.
constexpr int ToWhole(double number) {
    return static_cast<int>(number + 0.5); // NOLINT(bugprone-incorrect-roundings)
}

struct SineAndCosine {
    DoubleDouble sine;
    DoubleDouble cosine;
};

constexpr int kStepsOfOne = 64;

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

/// Of the multiples of the step up to 1.
constexpr auto kArcTans = [] {
    std::array<DoubleDouble, kStepsOfOne + 1> table;
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = ArcTanByEuler(static_cast<double>(i) / kStepsOfOne);
    return table;
}();

/// Of a rest of the step, whose square is given: its sine less itself, as a part of it; and its
/// cosine less 1.
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
    const DoubleDouble square = t * t;
    return (along + (along * CosineSeries(square) + linear + linear * SineSeries(square))).high;
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
DoubleDouble ArcTanSeries(DoubleDouble square) {
    constexpr DoubleDouble kThird = DoubleDouble(-1) / 3;
    constexpr DoubleDouble kFifth = DoubleDouble(1) / 5;
    constexpr DoubleDouble kSeventh = DoubleDouble(-1) / 7;
    const double x = square.high;
    const double small = x * (1.0 / 9 + x * (-1.0 / 11 + x * (1.0 / 13 - x / 15)));
    return square * (kThird + square * (kFifth + square * (kSeventh + small)));
}

/// The angle of the vector (x, y), or of (-x, y) where `behind`; x and y are not negative.
double Angle(DoubleDouble y, DoubleDouble x, bool behind) {
    const bool steep = y.high > x.high;
    if (steep)
        std::swap(x, y);

    // Turned back by a multiple of the step, whose tangent is c, it is the vector (x + c y, y - c
    // x).
    const int step = static_cast<int>(y.high / x.high * kStepsOfOne + 0.4999);
    const double c = static_cast<double>(step) / kStepsOfOne;
    DoubleDouble start = kArcTans[static_cast<std::size_t>(step)];
    if (steep)
        start = kHalfPi - start;
    if (behind)
        start = kPi - start;
    const double sign = steep != behind ? -1 : 1;

    const DoubleDouble t = (y - x * c) / (x + y * c);
    return (start + (t + t * ArcTanSeries(t * t)) * sign).high;
}

} // namespace

double SinInFull(double angle) {
    if (!std::isfinite(angle))
        return angle - angle;
    return std::fabs(angle) < kTiny ? angle : SineAfter(0, angle);
}

double CosInFull(double angle) {
    return std::isfinite(angle) ? SineAfter(1, angle) : angle - angle;
}

double ArcTan2InFull(double y, double x) {
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

double ArcCosInFull(double cosine) {
    if (!(std::fabs(cosine) <= 1))
        return std::isnan(cosine) ? cosine : std::numeric_limits<double>::quiet_NaN();
    const DoubleDouble sine = SquareRoot(ExactSum(1, cosine) * ExactSum(1, -cosine));
    return Angle(sine, std::fabs(cosine), std::signbit(cosine));
}

} // namespace convfile
