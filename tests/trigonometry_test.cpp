// Sine, cosine and their inverses: the nearest doubles, and the same bits on every system.

#include "routines/Trigonometry.h"

#include "routines/TrigonometryInFull.h"
#include "tests/support/NotFinite.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace {

using convfile::test::kInfinity;
using convfile::test::kNan;

/// Arguments of all sizes and signs; the same on every system.
class Arguments {
public:
    /// In [0, 1).
    double Unit() { return static_cast<double>(random_() >> 11) * 0x1p-53; }
    /// In (-1, 1).
    double Signed() {
        const double size = Unit();
        return random_() % 2 == 0 ? size : -size;
    }
    /// Between 2^lowest and 2^highest either way.
    double OfAnySize(int lowest, int highest) {
        const auto range = static_cast<std::uint64_t>(highest - lowest);
        const int exponent = lowest + static_cast<int>(random_() % range);
        const double sign = Signed();
        return std::ldexp(std::copysign(1 + Unit(), sign), exponent);
    }
    /// One of a thousand multiples of a step, or a neighbour of it.
    double NextToMultipleOf(double step) {
        const double multiple = step * static_cast<double>(1 + random_() % 1000);
        const auto place = random_() % 3;
        return place == 0 ? multiple : std::nextafter(multiple, place == 1 ? 0 : kInfinity);
    }

private:
    std::mt19937_64 random_{20240917};
};

/// The hardest of 30 million arguments each: their results lie within 2^-24 of a unit in the last
/// place of the middle between two doubles.
TEST(Trigonometry, TellsTheNearerOfTwoThatAreAlmostEquallyNear) {
    EXPECT_EQ(Sin(0x1.1d7d2d42ec052p+1), 0x1.949b1a0106e96p-1);
    EXPECT_EQ(Sin(0x1.5ee939bdef368p+2), -0x1.6f5b975e2016dp-1);
    EXPECT_EQ(Sin(0x1.3d1b6b587f4c9p+2), -0x1.f107c4d163675p-1);
    EXPECT_EQ(Cos(0x1.9ccb77da64c2p+0), -0x1.555f02dc0965fp-5);
    EXPECT_EQ(Cos(0x1.1f8f19ffc7133p+2), -0x1.bd7ea0db87d2ep-3);
    EXPECT_EQ(Cos(0x1.c17a73efa3215p+1), -0x1.dd5c0e87b6ddp-1);
    EXPECT_EQ(Cos(0x1.6ac5b262ca1ffp+849), -0x1.14ae72e6ba22fp-61)
        << "no double is nearer to a zero";
    EXPECT_EQ(Sin(std::numeric_limits<double>::max()), 0x1.452fc98b34e97p-8);
    EXPECT_EQ(ArcTan(0x1.e5bef6cbd9d88p+3), 0x1.81488d9bf3193p+0);
    EXPECT_EQ(ArcTan(0x1.92dd267f9069dp-3), 0x1.8dc8f468b1e64p-3);
    EXPECT_EQ(ArcTan(0x1.5571a8af746e9p+1), 0x1.364e4bbbd0ecdp+0);
    EXPECT_EQ(ArcCos(0x1.641af671f6e6cp-1), 0x1.9a72953f1494ep-1);
    EXPECT_EQ(ArcCos(-0x1.2c9fdecf75352p-1), 0x1.19632a42f7118p+1);
    EXPECT_EQ(ArcCos(-0x1.687101e1d175p-1), 0x1.2d07885ec9d45p+1);
}

TEST(Trigonometry, TakesEveryArgument) {
    const auto bits = [](double number) { return std::bit_cast<std::uint64_t>(number); };
    constexpr double kSmallest = std::numeric_limits<double>::denorm_min();
    constexpr double kLargest = std::numeric_limits<double>::max();
    constexpr double kPi = 0x1.921fb54442d18p+1;
    for (const double none : {kNan, kInfinity, -kInfinity}) {
        EXPECT_TRUE(std::isnan(Sin(none)));
        EXPECT_TRUE(std::isnan(Cos(none)));
        EXPECT_TRUE(std::isnan(ArcCos(none)));
    }
    EXPECT_TRUE(std::isnan(ArcTan(kNan)));
    EXPECT_TRUE(std::isnan(ArcTan2(kNan, kInfinity)));
    EXPECT_TRUE(std::isnan(ArcTan2(0, kNan)));
    EXPECT_TRUE(std::isnan(ArcCos(std::nextafter(1.0, 2))));
    EXPECT_TRUE(std::isnan(ArcCos(-kLargest)));

    for (const double small : {0.0, kSmallest, 0x1p-1022, 0x1p-500, 0x1p-30}) {
        for (const double itself : {small, -small}) {
            EXPECT_EQ(bits(Sin(itself)), bits(itself));
            EXPECT_EQ(bits(ArcTan(itself)), bits(itself));
            EXPECT_EQ(bits(ArcTan2(itself, 1)), bits(itself));
            EXPECT_EQ(Cos(itself), 1);
        }
    }
    for (const double sign : {1.0, -1.0}) {
        // Axes and diagonals, zeros told by their signs.
        for (const double size : {0.0, kSmallest, 1.0, kLargest, kInfinity}) {
            const double zero = sign * 0.0;
            EXPECT_EQ(bits(ArcTan2(zero, size)), bits(zero)) << size;
            EXPECT_EQ(ArcTan2(zero, -size), sign * kPi) << size;
            if (size == 0)
                continue;
            EXPECT_EQ(ArcTan2(sign * size, 0.0), sign * kPi / 2) << size;
            EXPECT_EQ(ArcTan2(sign * size, size), sign * kPi / 4) << size;
            EXPECT_EQ(ArcTan2(sign * size, -size), sign * 0x1.2d97c7f3321d2p+1) << size;
        }
        EXPECT_EQ(bits(ArcTan2(sign, kInfinity)), bits(sign * 0.0));
        EXPECT_EQ(ArcTan2(sign, -kInfinity), sign * kPi);
        EXPECT_EQ(ArcTan2(sign * kInfinity, -5), sign * kPi / 2);
        EXPECT_EQ(ArcTan(sign * kInfinity), sign * kPi / 2);
        EXPECT_EQ(ArcTan2(sign * kSmallest, kLargest), 0);
        EXPECT_EQ(ArcTan2(sign * kLargest, kSmallest), sign * kPi / 2);
        EXPECT_EQ(ArcTan2(sign * kSmallest, -kLargest), sign * kPi);
        // A common factor changes nothing.
        for (const double factor : {0x1p-1000, 0x1p-450, 0x1p450, 0x1p1000})
            EXPECT_EQ(ArcTan2(sign * 3 * factor, 7 * factor), ArcTan2(sign * 3, 7)) << factor;
    }
    EXPECT_EQ(ArcCos(kSmallest), kPi / 2);
    EXPECT_EQ(ArcCos(-0.0), kPi / 2);
    EXPECT_EQ(ArcCos(-1), kPi);
}

/// Two arguments of an arc tangent; other functions take the first.
using Pair = std::array<double, 2>;

/// One number for the bits of many results: FNV-1a. Where the C library's long doubles can tell, no
/// double is nearer to the exact result. (On Windows they cannot: the processor reduces their
/// angles by too short a pi.)
template <class Draw, class Ours, class Exact>
std::uint64_t Fingerprint(Draw draw, Ours ours, [[maybe_unused]] Exact exact) {
    Arguments arguments;
    std::uint64_t print = 0xcbf29ce484222325;
    for (int i = 0; i < 100000; ++i) {
        const Pair pair = draw(arguments);
        const double result = ours(pair);
        print ^= std::bit_cast<std::uint64_t>(result);
        print *= 0x100000001b3;
#if !defined(_WIN32)
        const double size = std::fabs(result);
        const double unit = std::nextafter(size, kInfinity) - size;
        EXPECT_LE(std::fabs(exact(pair) - result), unit * (0.5L + 0x1p-9L))
            << std::hexfloat << pair[0] << ' ' << pair[1];
#endif
    }
    return print;
}

/// Whatever compiled it, wherever it runs.
TEST(Trigonometry, GivesTheNearestDoublesTheSameBitsOnEverySystem) {
    using A = Arguments;
    using Wide = long double;
    const auto sine = [](auto draw) {
        return Fingerprint(
            draw, [](Pair p) { return Sin(p[0]); }, [](Pair p) { return std::sin(Wide{p[0]}); });
    };
    const auto cosine = [](auto draw) {
        return Fingerprint(
            draw, [](Pair p) { return Cos(p[0]); }, [](Pair p) { return std::cos(Wide{p[0]}); });
    };
    const auto arcTan = [](auto draw) {
        return Fingerprint(
            draw, [](Pair p) { return p[1] == 1 ? ArcTan(p[0]) : ArcTan2(p[0], p[1]); },
            [](Pair p) { return std::atan2(Wide{p[0]}, Wide{p[1]}); });
    };
    const auto arcCos = [](auto draw) {
        return Fingerprint(
            draw, [](Pair p) { return ArcCos(p[0]); },
            [](Pair p) { return std::acos(Wide{p[0]}); });
    };
    const auto usual = [](A& a) { return Pair{a.OfAnySize(-30, 40)}; };
    const auto any = [](A& a) { return Pair{a.OfAnySize(-60, 1023)}; };
    const auto quarters = [](A& a) { return Pair{a.NextToMultipleOf(1.5707963267948966)}; };
    const auto middles = [](A& a) { return Pair{a.NextToMultipleOf(1 / 128.0), 1}; };
    EXPECT_EQ(sine(usual), 0xfd23fc5248de201aU);
    EXPECT_EQ(sine(any), 0x967aae041766faaaU);
    EXPECT_EQ(sine(quarters), 0x3b80300564d3cb31U);
    EXPECT_EQ(sine(middles), 0x9bdb219c61770a9dU);
    EXPECT_EQ(cosine(usual), 0xd0102c9d58ca4912U);
    EXPECT_EQ(cosine(any), 0xe5510d7053fa42caU);
    EXPECT_EQ(cosine(quarters), 0x3d14ec2f45245ac0U);
    EXPECT_EQ(cosine(middles), 0x67730720a1272b27U);
    EXPECT_EQ(arcTan([](A& a) { return Pair{a.OfAnySize(-30, 30), 1}; }), 0x722086ce574de40dU);
    EXPECT_EQ(arcTan([](A& a) { return Pair{a.OfAnySize(-60, 40), 1}; }), 0x68319123e51be3c6U);
    EXPECT_EQ(arcTan([](A& a) { return Pair{a.Signed(), a.Signed()}; }), 0x47c321aafc08be2fU);
    EXPECT_EQ(arcTan([](A& a) {
                  return Pair{a.OfAnySize(-30, 30), a.OfAnySize(-30, 30)};
              }),
              0xe61f60623915bfa1U);
    EXPECT_EQ(arcTan(middles), 0xeb8db8c59270f9e8U);
    EXPECT_EQ(arcTan([](A& a) {
                  return Pair{1, -a.NextToMultipleOf(1 / 128.0)};
              }),
              0x8ed6b06030dfb4ebU);
    EXPECT_EQ(arcCos([](A& a) { return Pair{a.Signed()}; }), 0x2180682d0a4dd281U);
    EXPECT_EQ(arcCos([](A& a) { return Pair{1 - std::fabs(a.OfAnySize(-53, -1)) / 2}; }),
              0x77ee8d15b6af1607U);
    EXPECT_EQ(arcCos([](A& a) { return Pair{std::fabs(a.OfAnySize(-53, -1)) / 2 - 1}; }),
              0x74fb5e50ca951fe7U);
}

/// What a few bits settle is no other double than what a hundred bits say: where the steps of the
/// tables meet, next to the axes, and for the lengths and angles that are measured.
TEST(Trigonometry, SettlesNothingThatMoreBitsRefute) {
    constexpr double kHalfTurn = 0x1.921fb54442d18p+1;
    constexpr double kOfGon = 0.01570796327;
    Arguments random;
    const auto decimals = [&](double most, double ofOne) {
        return std::floor(random.Unit() * most * ofOne) / ofOne;
    };
    const auto expectSine = [](double angle) {
        EXPECT_EQ(Sin(angle), convfile::SinInFull(angle)) << std::hexfloat << angle;
        EXPECT_EQ(Cos(angle), convfile::CosInFull(angle)) << std::hexfloat << angle;
    };
    const auto expectArcs = [](double y, double x) {
        EXPECT_EQ(ArcTan2(y, x), convfile::ArcTan2InFull(y, x)) << std::hexfloat << y << ' ' << x;
        const double tangent = y / x;
        EXPECT_EQ(ArcTan(tangent), convfile::ArcTan2InFull(tangent, 1)) << std::hexfloat << tangent;
        const double cosine = y / std::sqrt(x * x + y * y);
        EXPECT_EQ(ArcCos(cosine), convfile::ArcCosInFull(cosine)) << std::hexfloat << cosine;
    };
    for (int i = 0; i < 20000; ++i) {
        const double near = random.OfAnySize(-60, -8);
        expectSine(decimals(400, 1e4) * kOfGon);
        expectSine(decimals(400, 1) * kOfGon);
        expectSine(random.NextToMultipleOf(kHalfTurn / 200));
        expectSine(random.NextToMultipleOf(kHalfTurn / 512));
        expectSine(random.NextToMultipleOf(kHalfTurn / 2) + near);
        expectArcs(decimals(200, 1e3) - 100, decimals(200, 1e3) - 100.0005);
        expectArcs(decimals(4, 1e3) - 2, 1 + decimals(100, 1e3));
        expectArcs(std::fmod(random.NextToMultipleOf(1 / 256.0), 1) + near, -1);
        expectArcs(1, std::fmod(random.NextToMultipleOf(1 / 128.0), 1) + near);
        expectArcs(near, 3);
    }
}

} // namespace
