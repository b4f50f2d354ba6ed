#include "routines/Angles.h"

#include "host/NoValue.h"
#include "routines/Text.h"
#include "routines/Trigonometry.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kTurn = 400;
constexpr double kArcSecondsPerGon = 3240; // exactly

/// Decimals of seconds of arc that are read: with more, the digits would not fit a double.
constexpr std::size_t kSecondDecimals = 6;

/// The number of those digits, of which the text may lack the last.
double NumberOfDigits(std::string_view text, std::size_t from, std::size_t count) {
    double number = 0;
    for (std::size_t i = from; i < from + count; ++i)
        number = number * 10 + (i < text.size() ? text[i] - '0' : 0);
    return number;
}

std::string_view DigitsAtStart(std::string_view text) {
    return text.substr(0, std::min(text.find_first_not_of("0123456789"), text.size()));
}

bool IsAngle(double angle) {
    return IsPresent(angle) && std::isfinite(angle);
}

} // namespace

std::optional<double> GonFromSexagesimal(std::string_view degrees,
                                         std::string_view minutesAndSeconds) {
    const double minutes = NumberOfDigits(minutesAndSeconds, 0, 2);
    const double seconds = NumberOfDigits(minutesAndSeconds, 2, 2);
    if (minutes >= 60 || seconds >= 60)
        return std::nullopt;
    const double whole = NumberOfDigits(degrees, 0, degrees.size()) * 3600 + minutes * 60 + seconds;
    constexpr double kPerSecond = 1e6;
    const double part = NumberOfDigits(minutesAndSeconds, 4, kSecondDecimals);
    return (whole * kPerSecond + part) / (kArcSecondsPerGon * kPerSecond);
}

std::size_t SexagesimalAtStart(std::string_view text, double& gon) {
    std::string_view rest = TrimLeft(text);
    const bool isNegative = rest.starts_with('-');
    rest.remove_prefix(isNegative || rest.starts_with('+') ? 1 : 0);
    const std::string_view degrees = DigitsAtStart(rest);
    rest.remove_prefix(degrees.size());
    std::string_view behind;
    if (rest.starts_with('.')) {
        rest.remove_prefix(1);
        behind = DigitsAtStart(rest);
        rest.remove_prefix(behind.size());
    }
    if (degrees.empty() && behind.empty())
        return 0;
    const double angle = GonFromSexagesimal(degrees, behind).value_or(kNoValue);
    gon = isNegative && IsAngle(angle) ? -angle : angle;
    return text.size() - rest.size();
}

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
