// Sine, cosine and their inverses against slow, exact ones, and the same bits on every system.

#include "routines/Trigonometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

__extension__ using Wide = unsigned __int128;

/// A number that is not negative, with 64 bits before the point and 64 (N - 1) behind.
template <std::size_t N>
struct Fixed {
    std::array<std::uint64_t, N> limbs{}; ///< the last one stands before the point

    Fixed() = default;
    explicit Fixed(double number) {
        int exponent = 0;
        const auto mantissa = static_cast<std::uint64_t>(std::frexp(number, &exponent) * 0x1p53);
        const int shift = static_cast<int>(64 * (N - 1)) + exponent - 53;
        EXPECT_TRUE(mantissa == 0 || (shift >= 0 && exponent <= 64)) << number;
        const auto limb = static_cast<std::size_t>(shift / 64);
        const Wide bits = static_cast<Wide>(mantissa) << (shift % 64);
        if (mantissa == 0)
            return;
        limbs[limb] = static_cast<std::uint64_t>(bits);
        if (limb + 1 < N)
            limbs[limb + 1] = static_cast<std::uint64_t>(bits >> 64);
    }
    /// The leading places of a longer one.
    template <std::size_t M>
    explicit Fixed(const Fixed<M>& longer) {
        std::copy_n(longer.limbs.end() - N, N, limbs.begin());
    }

    Fixed& operator+=(const Fixed& other) {
        Wide sum = 0;
        for (std::size_t i = 0; i < N; ++i) {
            sum += static_cast<Wide>(limbs[i]) + other.limbs[i];
            limbs[i] = static_cast<std::uint64_t>(sum);
            sum >>= 64;
        }
        return *this;
    }
    Fixed& operator-=(const Fixed& other) {
        std::uint64_t borrow = 0;
        for (std::size_t i = 0; i < N; ++i) {
            const Wide rest = static_cast<Wide>(limbs[i]) - other.limbs[i] - borrow;
            limbs[i] = static_cast<std::uint64_t>(rest);
            borrow = static_cast<std::uint64_t>(rest >> 64) & 1;
        }
        return *this;
    }
    Fixed& operator/=(std::uint64_t divisor) {
        Wide rest = 0;
        for (std::size_t i = N; i-- > 0;) {
            rest = rest << 64 | limbs[i];
            limbs[i] = static_cast<std::uint64_t>(rest / divisor);
            rest %= divisor;
        }
        return *this;
    }
    friend Fixed operator*(const Fixed& a, const Fixed& b) {
        std::array<std::uint64_t, 2 * N> product{};
        for (std::size_t i = 0; i < N; ++i) {
            Wide carry = 0;
            for (std::size_t j = 0; j < N; ++j) {
                carry += static_cast<Wide>(a.limbs[i]) * b.limbs[j] + product[i + j];
                product[i + j] = static_cast<std::uint64_t>(carry);
                carry >>= 64;
            }
            product[i + N] = static_cast<std::uint64_t>(carry);
        }
        Fixed result;
        std::copy_n(product.begin() + N - 1, N, result.limbs.begin());
        return result;
    }
    friend std::strong_ordering operator<=>(const Fixed& a, const Fixed& b) {
        return std::lexicographical_compare_three_way(a.limbs.rbegin(), a.limbs.rend(),
                                                      b.limbs.rbegin(), b.limbs.rend());
    }
    friend bool operator==(const Fixed&, const Fixed&) = default;
    bool IsZero() const { return *this == Fixed(); }
};

using Long = Fixed<24>; ///< room for the largest double's quarter turns
using Number = Fixed<4>;

/// Arc tangent of 1 / n.
Long ArcTanOfInverse(std::uint64_t n) {
    Long power(1);
    power /= n;
    Long sum = power;
    for (std::uint64_t i = 3; !power.IsZero(); i += 2) {
        power /= n * n;
        Long term = power;
        term /= i;
        if (i % 4 == 3)
            sum -= term;
        else
            sum += term;
    }
    return sum;
}

/// pi / 2 by Machin's formula: 8 atan(1 / 5) - 2 atan(1 / 239).
const Long& HalfPi() {
    static const Long halfPi = [] {
        Long sum;
        for (int i = 0; i < 8; ++i)
            sum += ArcTanOfInverse(5);
        for (int i = 0; i < 2; ++i)
            sum -= ArcTanOfInverse(239);
        return sum;
    }();
    return halfPi;
}

/// An angle as quarter turns and the sine and cosine of what is left.
struct Direction {
    unsigned quarterTurns = 0;
    Number sine;
    Number cosine{1};

    /// Of angle x 2^doublings, where neither that nor the angle is negative.
    explicit Direction(Long angle, int doublings = 0) {
        const auto reduce = [&] {
            for (; angle >= HalfPi(); ++quarterTurns)
                angle -= HalfPi();
        };
        reduce();
        for (; doublings > 0; --doublings) {
            angle += angle;
            quarterTurns *= 2;
            reduce();
        }
        // The Taylor series.
        const Number rest(angle);
        Number term(1);
        for (unsigned i = 1; !term.IsZero(); ++i) {
            term = term * rest;
            term /= i;
            Number& sum = i % 2 == 1 ? sine : cosine;
            if (i % 4 < 2)
                sum += term;
            else
                sum -= term;
        }
    }
};

Direction DirectionOf(double angle) {
    int exponent = 0;
    const double fraction = std::frexp(angle, &exponent);
    return exponent <= 3 ? Direction(Long(angle)) : Direction(Long(fraction), exponent);
}

/// Between a double and the one above it.
Long MiddleAbove(double number) {
    Long middle(number);
    middle += Long((std::nextafter(number, kInfinity) - number) / 2);
    return middle;
}

/// True where no double is nearer to the value (which is not negative) than that one.
bool IsNearest(double number, const Number& value) {
    return (number == 0 || value >= Number(MiddleAbove(std::nextafter(number, 0)))) &&
           value <= Number(MiddleAbove(number));
}

/// A test of a result: true where the exact one is not below an angle.
template <class Reaches>
bool IsNearestAngle(double number, Reaches reaches) {
    return (number == 0 || reaches(Direction(MiddleAbove(std::nextafter(number, 0))))) &&
           !reaches(Direction(MiddleAbove(number)));
}

std::string Hex(double number) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%a", number);
    return text.data();
}

void ExpectSineAndCosine(double angle) {
    const Direction exact = DirectionOf(std::fabs(angle));
    const unsigned turns = exact.quarterTurns % 4;
    const bool odd = turns % 2 == 1;
    const double sine = (turns >= 2) != std::signbit(angle) ? -Sin(angle) : Sin(angle);
    const double cosine = turns == 1 || turns == 2 ? -Cos(angle) : Cos(angle);
    EXPECT_TRUE(IsNearest(sine, odd ? exact.cosine : exact.sine)) << Hex(angle);
    EXPECT_TRUE(IsNearest(cosine, odd ? exact.sine : exact.cosine)) << Hex(angle);
}

void ExpectArcTan2(double y, double x) {
    const Number up(std::fabs(y));
    const Number along(std::fabs(x));
    const unsigned quarter = x < 0 ? 1 : 0;
    const auto reaches = [&](const Direction& angle) {
        if (angle.quarterTurns != quarter)
            return angle.quarterTurns < quarter;
        return quarter == 0 ? up * angle.cosine >= along * angle.sine
                            : along * angle.cosine >= up * angle.sine;
    };
    const double result = ArcTan2(y, x);
    EXPECT_EQ(std::signbit(result), std::signbit(y));
    EXPECT_TRUE(IsNearestAngle(std::fabs(result), reaches)) << Hex(y) << ' ' << Hex(x);
    if (x == 1) {
        EXPECT_EQ(ArcTan(y), result);
    }
}

void ExpectArcCos(double cosine) {
    const Number size(std::fabs(cosine));
    const auto reaches = [&](const Direction& angle) {
        if (cosine >= 0)
            return angle.quarterTurns == 0 && size <= angle.cosine;
        return angle.quarterTurns == 0 || (angle.quarterTurns == 1 && size >= angle.sine);
    };
    EXPECT_TRUE(IsNearestAngle(ArcCos(cosine), reaches)) << Hex(cosine);
}

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

private:
    std::mt19937_64 random_{20240917};
};

TEST(Trigonometry, SineAndCosineAreTheNearestDoubles) {
    Arguments arguments;
    for (int i = 0; i < 15000; ++i)
        ExpectSineAndCosine(7 * arguments.Signed());
    for (int i = 0; i < 5000; ++i)
        ExpectSineAndCosine(arguments.OfAnySize(-60, 20));
    for (int i = 0; i < 500; ++i)
        ExpectSineAndCosine(arguments.OfAnySize(20, 1023));
    // Near zeros and extremes; between two multiples of the step of the tables.
    for (int i = 1; i < 1000; ++i) {
        for (double angle : {i * 1.5707963267948966, i / 128.0}) {
            ExpectSineAndCosine(angle);
            ExpectSineAndCosine(std::nextafter(angle, kInfinity));
            ExpectSineAndCosine(std::nextafter(angle, 0));
        }
    }
    ExpectSineAndCosine(0x1.6ac5b262ca1ffp+849); // no double is nearer to a multiple of pi / 2
    ExpectSineAndCosine(std::numeric_limits<double>::max());
}

TEST(Trigonometry, ArcTangentsAreTheNearestDoubles) {
    Arguments arguments;
    for (int i = 0; i < 15000; ++i)
        ExpectArcTan2(arguments.Signed(), arguments.Signed());
    for (int i = 0; i < 15000; ++i)
        ExpectArcTan2(arguments.OfAnySize(-30, 30), arguments.OfAnySize(-30, 30));
    for (int i = 0; i < 15000; ++i)
        ExpectArcTan2(arguments.OfAnySize(-60, 40), 1);
    for (int i = 1; i < 1000; ++i) {
        const double tangent = i / 128.0;
        for (const double y : {tangent, std::nextafter(tangent, 0), std::nextafter(tangent, 9)}) {
            ExpectArcTan2(y, 1);
            ExpectArcTan2(1, -y);
        }
    }
}

TEST(Trigonometry, ArcCosinesAreTheNearestDoubles) {
    Arguments arguments;
    for (int i = 0; i < 15000; ++i)
        ExpectArcCos(arguments.Signed());
    for (int i = 0; i < 5000; ++i) {
        const double small = arguments.OfAnySize(-53, -1);
        ExpectArcCos(small);
        ExpectArcCos(std::copysign(1, small) - small / 2);
    }
    for (const double cosine : {0.5, -0.5, 0.0, -1.0, std::nextafter(1.0, 0)})
        ExpectArcCos(cosine);
    EXPECT_EQ(ArcCos(1), 0);
}

/// The hardest of 30 million arguments each: their results lie within 2^-24 of a unit in the last
/// place of the middle between two doubles.
TEST(Trigonometry, TellsTheNearerOfTwoThatAreAlmostEquallyNear) {
    EXPECT_EQ(Sin(0x1.1d7d2d42ec052p+1), 0x1.949b1a0106e96p-1);
    EXPECT_EQ(Sin(0x1.5ee939bdef368p+2), -0x1.6f5b975e2016dp-1);
    EXPECT_EQ(Sin(0x1.3d1b6b587f4c9p+2), -0x1.f107c4d163675p-1);
    EXPECT_EQ(Cos(0x1.9ccb77da64c2p+0), -0x1.555f02dc0965fp-5);
    EXPECT_EQ(Cos(0x1.1f8f19ffc7133p+2), -0x1.bd7ea0db87d2ep-3);
    EXPECT_EQ(Cos(0x1.c17a73efa3215p+1), -0x1.dd5c0e87b6ddp-1);
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

/// One number for the bits of many results: FNV-1a.
template <class Function>
std::uint64_t Fingerprint(Function function) {
    Arguments arguments;
    std::uint64_t print = 0xcbf29ce484222325;
    for (int i = 0; i < 100000; ++i) {
        print ^= std::bit_cast<std::uint64_t>(function(arguments));
        print *= 0x100000001b3;
    }
    return print;
}

/// Whatever compiled it, wherever it runs.
TEST(Trigonometry, GivesTheSameBitsOnEverySystem) {
    EXPECT_EQ(Fingerprint([](Arguments& a) { return Sin(a.OfAnySize(-30, 40)); }),
              0xfd23fc5248de201aU);
    EXPECT_EQ(Fingerprint([](Arguments& a) { return Cos(a.OfAnySize(-30, 40)); }),
              0xd0102c9d58ca4912U);
    EXPECT_EQ(Fingerprint([](Arguments& a) { return ArcTan(a.OfAnySize(-30, 30)); }),
              0x722086ce574de40dU);
    EXPECT_EQ(Fingerprint([](Arguments& a) {
                  const double y = a.Signed();
                  return ArcTan2(y, a.Signed());
              }),
              0x47c321aafc08be2fU);
    EXPECT_EQ(Fingerprint([](Arguments& a) { return ArcCos(a.Signed()); }), 0x2180682d0a4dd281U);
}

} // namespace
