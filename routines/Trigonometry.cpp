// The quick way to a result, for all but one in some hundreds; those few are left to
// TrigonometryInFull.
//
// An angle or a tangent is split into a multiple of a step and a rest t of no more than half of
// one. What stands for the multiple is in a table, with more bits than a double has. So is the
// factor of t, whose first 26 bits are multiplied with the first 26 bits of t, without loss; both
// are added, and what the sum loses is kept. All else is at most 2^-15 of the result and done in
// plain doubles. Each operation there is wrong by at most 2^-53 of its own result, here called a
// unit, so that the whole is right to 2^-62 or better. Where all numbers as near as that to it
// round to one double, this is the nearest to the true value. (2^-62 leaves three results of a
// thousand unsettled, 2^-64 one.) The bounds are derived where they stand.

#include "routines/Trigonometry.h"

#include "routines/TrigonometryInFull.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace {

using convfile::DoubleDouble;
using convfile::kHalfPi;
using convfile::kPi;

/// A number as the sum of two doubles, the second much smaller; unlike a DoubleDouble it may have
/// a first one that is not the nearest.
struct Sum {
    double high;
    double low;
};

/// Whether a sum that is off by less than the doubt has one nearest double only; and that one.
inline bool Settles(Sum sum, double doubt, double& nearest) {
    nearest = sum.high + (sum.low - doubt);
    return nearest >= sum.high + (sum.low + doubt); // a NaN settles nothing
}

/// The first 26 bits of a number, whose product with as many or 27 others is exact.
constexpr double FirstHalf(double number) {
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(number) & ~std::uint64_t{0x7ffffff});
}

constexpr Sum Halves(double number) {
    const double half = FirstHalf(number);
    return {half, number - half};
}

constexpr Sum Halves(DoubleDouble number) {
    const double half = FirstHalf(number.high);
    return {half, (number.high - half) + number.low};
}

// Sine and cosine

constexpr int kStepsOfTurn = 512;

/// The sines of the multiples of the step, of a turn and a quarter: what stands a quarter turn
/// behind each is its cosine.
constexpr auto kSines = [] {
    constexpr int kHalfTurn = kStepsOfTurn / 2;
    constexpr int kQuarter = kStepsOfTurn / 4;
    std::array<Sum, kStepsOfTurn + kQuarter> table{};
    for (int i = 0; i < static_cast<int>(table.size()); ++i) {
        const int sinceAxis = i % kHalfTurn;
        const int fromAxis = sinceAxis > kQuarter ? kHalfTurn - sinceAxis : sinceAxis;
        const bool isCosine = fromAxis > kQuarter / 2;
        const double steps = isCosine ? kQuarter - fromAxis : fromAxis;
        const DoubleDouble angle = kPi * (steps / kHalfTurn);
        const DoubleDouble square = angle * angle;
        const DoubleDouble size = isCosine ? convfile::AlternatingSeries(square, 1)
                                           : angle * convfile::AlternatingSeries(square, 2);
        table[static_cast<std::size_t>(i)] = Halves(i / kHalfTurn % 2 == 0 ? size : -size);
    }
    return table;
}();

/// Angles of some turns: their number of steps has no more than eleven bits.
constexpr double kMostRadians = 24;

/// The sine of an angle below that, and of as many steps more.
inline Sum SineAfter(std::size_t steps, double angle) {
    // The step, pi / 256, in three parts, the first two of 31 and 32 bits, so that their products
    // with the number of steps are exact; so is the first difference, since both numbers are
    // multiples of the same power of 2 and nearly the same. The third product is off by 2^-118.
    constexpr std::array<double, 3> kStep = {0x1.921fb544p-7, 0x1.0b4611a6p-41,
                                             0x1.3198a2e037073p-76};
    constexpr double kStepsOfRadian = 0x1.45f306dc9c883p+6;
    constexpr double kRoundToWhole = 0x1.8p52;
    const double shifted = angle * kStepsOfRadian + kRoundToWhole;
    const double count = shifted - kRoundToWhole;
    const double first = angle - count * kStep[0];
    const double second = count * kStep[1];
    const double t = first - second;
    const double half = FirstHalf(t);
    const double rest = (t - half) + (((first - t) - second) - count * kStep[2]);

    const std::size_t row = (std::bit_cast<std::uint64_t>(shifted) + steps) % kStepsOfTurn;
    const Sum* const start = &kSines[row];
    const Sum sine = start[0];
    const Sum cosine = start[kStepsOfTurn / 4];

    // sine x cos t + cosine x sin t
    const double square = t * t;
    const double cosineLess1 = square * (-1.0 / 2 + square * (1.0 / 24 + square * (-1.0 / 720)));
    const double sineLessT =
        t * square * (-1.0 / 6 + square * (1.0 / 120 + square * (-1.0 / 5040)));
    const double linear = cosine.high * half;
    const double high = sine.high + linear;
    const double low =
        ((sine.high - high) + linear) +
        (sine.low + (cosine.low * half + ((sine.high + sine.low) * cosineLess1 +
                                          (cosine.high + cosine.low) * (sineLessT + rest))));
    return {high, low};
}

/// How far that may be off. The cosine of t, less 1, is below 2^-15.69. Multiplied by the table's
/// sine it is seven units of that off: two because the square leaves out the rest of t, one each
/// for the square, the last addition and multiplication of the series, the sum of the table's
/// halves and the product. To add the other parts and the doubt costs five more, and what is
/// multiplied by the cosine is so much smaller that its own units make no more than two. Fourteen
/// units are 2^-64.88 of the table's sine, and that is at most twice the result: 2^-63.88.
///
/// At the axis the table's sine is 0 and the result t less t t t / 6, of which ten units are
/// 2^-66.9 of t. What the series leave out is below 2^-74. The angle's rest is off by 2^-117 and
/// nothing.
inline double DoubtOfSine(double sine) {
    return 0x1.4p-64 * std::fabs(sine) + 0x1p-112;
}

// Arc tangent and arc cosine

constexpr std::size_t kStepsOfOne = 128;

/// The Taylor series around a multiple of the step: the arc tangent there, as a number of few bits
/// and a rest; its slope, as 26 bits and a rest; and the coefficients of the powers of t.
struct ArcTanSeries {
    double high;
    double low;
    double slopeHigh;
    double slopeLow;
    double t2;
    double t3;
    double t4;
    double t5;
    double t6;
    double t7;
};

/// A number below 4 to 40 bits behind the point: two of them add without loss.
constexpr double Coarse(double number) {
    constexpr double kRound = 0x1.8p12;
    return (number + kRound) - kRound;
}

constexpr auto kArcTanSeries = [] {
    std::array<ArcTanSeries, kStepsOfOne + 1> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const double c = static_cast<double>(i) / kStepsOfOne;
        ArcTanSeries& series = table[i];
        const DoubleDouble angle = convfile::ArcTanByEuler(c);
        series.high = Coarse(angle.high);
        series.low = (angle.high - series.high) + angle.low;

        // The coefficients of the slope 1 / (1 + x x) fulfil (1 + c c) b + 2 c b' + b'' = 0, three
        // in a row; those of its integral are these, divided by the power.
        const DoubleDouble scale = 1 + c * c;
        DoubleDouble b = DoubleDouble(1) / scale;
        DoubleDouble before = 0;
        const Sum slope = Halves(b);
        series.slopeHigh = slope.high;
        series.slopeLow = slope.low;
        double power = 1;
        for (double* const coefficient :
             {&series.t2, &series.t3, &series.t4, &series.t5, &series.t6, &series.t7}) {
            const DoubleDouble next = -(b * (2 * c) + before) / scale;
            before = b;
            b = next;
            power += 1;
            *coefficient = (b / power).high;
        }
    }
    return table;
}();

/// Where the angle of a vector starts from, to which is added, or from which is subtracted, the arc
/// tangent of a quotient: of the lesser part of the vector by the greater one.
///
/// How far the angle may be off: t is at most 2^-8. The curved part, in the main t t c / (1 + c
/// c)^2, is seven units of it off: three for the square of t, which is itself a rounded sum, three
/// for the coefficient and the two sums with it, one for the product. The higher powers add one. To
/// add the other parts and the doubt costs five more. The series ends before the eighth power,
/// whose coefficient is below 1 / 8 and below c.
///
/// Where it starts from 0, the angle is at least half of c. The end of the series is 2^-63 of it,
/// fifteen units of 2 t t are 2^-64.0, the ninth power is 2^-67: together 2^-62.3. (In the first
/// half of a step, c is 0 and the curved part t t t / 3, fifteen units of which are 2^-66 of t.
/// There the error of the quotient counts in full, and makes 2^-63 of it down to 2^-14.)
///
/// Elsewhere the angle is at least pi / 4. The curved part is at most 0.325 t t, thirteen units of
/// it are 2^-66.9, the end of the series is 2^-67: together 2^-65.9, or 2^-65.5 of the angle.
struct Octant {
    double high;
    double low;
    double sign;
    double doubt;         ///< more than it may be off, as a part of it
    double leastQuotient; ///< for which that is true
};

constexpr double kDoubtFromZero = 0x1p-62;
constexpr double kDoubt = 0x1p-65;

constexpr Octant MakeOctant(DoubleDouble start, double sign, double doubt, double leastQuotient) {
    const double high = Coarse(start.high);
    return {high, (start.high - high) + start.low, sign, doubt, leastQuotient};
}

/// By whether the vector is steep, 1, and goes back, 2.
constexpr std::array<Octant, 4> kOctants = {
    MakeOctant(0, 1, kDoubtFromZero, 0x1p-14), MakeOctant(kHalfPi, -1, kDoubt, 0),
    MakeOctant(kPi, -1, kDoubt, 0), MakeOctant(kHalfPi, 1, kDoubt, 0)};

const Octant& OctantOf(bool steep, bool back) {
    return kOctants[(steep ? 1U : 0U) + (back ? 2U : 0U)];
}

/// (dividend - lack) / divisor, at most 1, by the inverse of the divisor: a multiple of 2^-26,
/// which multiplies the first half of the divisor without loss and the other as well, and a rest.
/// What that leaves of the dividend is about 2^-27 of the divisor and few units of it off, so the
/// quotient is right to 2^-78; below 2^-24 to 2^-77, since the first difference may lose its last
/// bits there.
inline Sum Quotient(double dividend, double lack, Sum divisor, double inverse) {
    constexpr double kRoundToHalf = 0x1.8p26;
    const double half = ((dividend - lack) * inverse + kRoundToHalf) - kRoundToHalf;
    const double rest = ((dividend - half * divisor.high) - half * divisor.low) - lack;
    return {half, rest * inverse};
}

/// The quotient has 26 bits and a rest, or is a multiple of 2^-26 and a rest.
inline Sum AngleOf(Sum quotient, const Octant& octant) {
    constexpr double kRoundToStep = 0x1.8p45;
    const double shifted = quotient.high + kRoundToStep;
    const ArcTanSeries& series =
        kArcTanSeries[std::bit_cast<std::uint64_t>(shifted) % (2 * kStepsOfOne)];

    // high: start + sign (arc tangent of c + slope t)
    const double half = quotient.high - (shifted - kRoundToStep);
    const double t = half + quotient.low;
    const double square = t * t;
    const double curved = (series.t2 + square * (series.t4 + square * series.t6)) +
                          t * (series.t3 + square * (series.t5 + square * series.t7));
    const double rest =
        series.low + (t * series.slopeLow + quotient.low * series.slopeHigh + square * curved);
    const double base = octant.high + octant.sign * series.high;
    const double linear = octant.sign * (half * series.slopeHigh);
    const double high = base + linear;
    return {high, ((base - high) + linear) + (octant.low + octant.sign * rest)};
}

} // namespace

double Sin(double angle) {
    double sine = 0;
    if (std::fabs(angle) < kMostRadians) [[likely]] {
        const Sum sum = SineAfter(0, angle);
        if (Settles(sum, DoubtOfSine(sum.high), sine)) [[likely]]
            return sine;
    }
    return convfile::SinInFull(angle);
}

double Cos(double angle) {
    double cosine = 0;
    if (std::fabs(angle) < kMostRadians) [[likely]] {
        const Sum sum = SineAfter(kStepsOfTurn / 4, angle);
        if (Settles(sum, DoubtOfSine(sum.high), cosine)) [[likely]]
            return cosine;
    }
    return convfile::CosInFull(angle);
}

double ArcTan(double tangent) {
    constexpr double kTiny = 0x1p-54;
    const double size = std::fabs(tangent);
    double angle = 0;
    if (size > 1) {
        const Sum sum = AngleOf(Quotient(1, 0, Halves(size), 1 / size), kOctants[1]);
        if (Settles(sum, kDoubt, angle)) [[likely]]
            return std::copysign(angle, tangent);
    } else if (size >= kTiny) {
        const Sum sum = AngleOf(Halves(size), kOctants[0]);
        if (Settles(sum, kDoubtFromZero * sum.high, angle)) [[likely]]
            return std::copysign(angle, tangent);
    }
    return convfile::ArcTan2InFull(tangent, 1);
}

double ArcTan2(double y, double x) {
    constexpr double kMuch = 0x1p500;
    const double up = std::fabs(y);
    const double along = std::fabs(x);
    const bool steep = up > along;
    const double divisor = steep ? up : along;
    if (divisor > 1 / kMuch && divisor < kMuch) [[likely]] {
        const Octant& octant = OctantOf(steep, std::signbit(x));
        const Sum quotient = Quotient(steep ? along : up, 0, Halves(divisor), 1 / divisor);
        double angle = 0;
        if (quotient.high >= octant.leastQuotient) [[likely]] {
            const Sum sum = AngleOf(quotient, octant);
            if (Settles(sum, octant.doubt * sum.high, angle)) [[likely]]
                return std::copysign(angle, y);
        }
    }
    return convfile::ArcTan2InFull(y, x);
}

double ArcCos(double cosine) {
    const double along = std::fabs(cosine);
    if (along < 1) [[likely]] {
        // The sine is the root of (1 - cosine) (1 + cosine), two exact sums. The product of their
        // first halves is exact; all else is below 2^-23 of it and few units off. So is what the
        // square of the root's first half leaves. The sine, and the quotient, are right to 2^-73.
        const double less = 1 - along;
        const double more = 1 + along;
        const double lessRest = (1 - less) - along;
        const double moreRest = along - (more - 1);
        const Sum l = Halves(less);
        const Sum m = Halves(more);
        const double square = l.high * m.high;
        const double squareRest =
            (l.high * m.low + l.low * more) + (less * moreRest + more * lessRest);
        const double up = std::sqrt(square + squareRest);
        const double half = FirstHalf(up);
        const Sum sine = {half, ((square - half * half) + squareRest) / (up + half)};

        const bool steep = up > along;
        const Octant& octant = OctantOf(steep, std::signbit(cosine));
        const Sum quotient = steep ? Quotient(along, 0, sine, 1 / up)
                                   : Quotient(sine.high, -sine.low, Halves(along), 1 / along);
        double angle = 0;
        if (quotient.high >= octant.leastQuotient) [[likely]] {
            const Sum sum = AngleOf(quotient, octant);
            if (Settles(sum, octant.doubt * sum.high, angle)) [[likely]]
                return angle;
        }
    }
    return convfile::ArcCosInFull(cosine);
}
