#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

/// Angles in gon: 400 to the circle, zenith angle 100 for the horizontal.

/// Gon per radian as the trade's programs write it: 200 / 3.141592654, pi rounded to nine
/// decimals. Not 200 / pi to full precision, on purpose: every field book has it in its digits.
inline constexpr double kGonPerRadian = 63.66197722844561;

/// Radians per gon as the offset formulas write it: pi / 200, rounded.
inline constexpr double kRadiansPerGon = 0.01570796327;

/// Gon per second of arc: 400 / 1296000, rounded to nine decimals as the instruments' makers do.
inline constexpr double kGonPerArcSecond = 0.000308642;

/// Degrees to gon, from left to right: degrees x 400, then / 360.
constexpr double GonFromDegrees(double degrees) {
    return degrees * 400 / 360;
}

/// Gon of an angle in degrees, minutes and seconds, from their digits: "35" and "4510" are
/// 35°45'10", what is behind these are decimals of the seconds. The nearest double to it:
/// 59.9999999" stay less than a minute. None for minutes or seconds of 60 or more.
std::optional<double> GonFromSexagesimal(std::string_view degrees,
                                         std::string_view minutesAndSeconds);

/// The same of a number DDD.MMSSss at the start of the text (35.451 is 35°45'10"): leading blanks,
/// an optional sign, which is the whole angle's, digits. Gives how many characters it takes; 0, and
/// `gon` left as it was, where there is no digit. `gon` is the no-value marker for minutes or
/// seconds of 60 or more.
std::size_t SexagesimalAtStart(std::string_view text, double& gon);

/// Brings an angle into [0, 400) by whole turns; an absent or non-finite one is left as it is.
double LimiteAng0_400(double angle);

/// Brings an angle into (-200, 200] by whole turns; an absent or non-finite one is left as it is.
/// Part of the host's routine set; nothing here calls it.
double LimiteAng200_200(double angle);

/// The bearing of a vector: from north (the reference axis), clockwise, in [0, 400).
double AngoloDaAsseRifer(double east, double north);
