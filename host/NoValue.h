#pragma once

/// The no-value marker: what a field book holds for a measurement that was not made.
inline constexpr double kNoValue = 1.7e200;

/// Half the marker: a value counts as present below it. A marker must not be scaled: a thousandth
/// of it would count as present.
inline constexpr double kPresentBelow = 8.5e199;

/// True where a measurement is there: below half the marker (so a NaN is not).
constexpr bool IsPresent(double value) {
    return value < kPresentBelow;
}

/// The value, 0 where it is absent.
constexpr double ValueOrZero(double value) {
    return IsPresent(value) ? value : 0;
}
