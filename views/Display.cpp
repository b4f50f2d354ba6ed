#include "views/Display.h"

#include "host/NoValue.h"
#include "routines/CodePage.h"
#include "routines/Numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace convfile::views {

namespace {

constexpr char kAbsent = '-';

/// From here on decimals only hide the size of a number.
constexpr double kTooLargeForDecimals = 1e9;

bool HasDecimals(double value) {
    return IsPresent(value) && std::fabs(value) < kTooLargeForDecimals;
}

void AppendEscaped(std::string& shown, unsigned char c) {
    constexpr std::string_view kHex = "0123456789ABCDEF";
    shown += "\\x";
    shown += kHex[c >> 4];
    shown += kHex[c & 0xF];
}

std::string ShownWith(double value, int decimals) {
    std::array<char, kNumberRoom> digits;
    return {digits.data(), WriteShown(digits.data(), value, decimals)};
}

} // namespace

std::string ShownUtf8(std::string_view utf8) {
    std::string shown;
    shown.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto c = static_cast<unsigned char>(utf8[i]);
        const bool control = c < 0x20 || c == 0x7F;
        // C2 80 to C2 9F are the upper control characters, some terminals obey them too.
        const bool upperControl =
            c == 0xC2 && i + 1 < utf8.size() && static_cast<unsigned char>(utf8[i + 1]) < 0xA0;
        if (upperControl)
            AppendEscaped(shown, static_cast<unsigned char>(utf8[++i]));
        else if (control)
            AppendEscaped(shown, c);
        else
            shown += utf8[i];
    }
    return shown;
}

std::string Shown(std::string_view windows1252) {
    return ShownUtf8(Utf8FromWindows1252(windows1252));
}

std::size_t ShownWidth(std::string_view utf8) {
    const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80; };
    return utf8.size() - static_cast<std::size_t>(std::ranges::count_if(utf8, continues));
}

/// Eight characters at a time: what is below a blank borrows, what is above "~" carries.
bool IsShownAsItIs(std::string_view windows1252) {
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    const char* at = windows1252.data();
    std::size_t left = windows1252.size();
    std::uint64_t others = 0;
    for (; left >= sizeof others; left -= sizeof others, at += sizeof others) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, at, sizeof bytes);
        others |= bytes | (bytes + kOnes) | (bytes - ' ' * kOnes);
    }
    for (; left > 0; --left, ++at)
        others |= *at >= ' ' && *at < '\x7F' ? 0 : kOnes * 0x80;
    return (others & kOnes * 0x80) == 0;
}

char* WriteShown(char* to, double value, int decimals) {
    static_assert(kNumberRoom >= kDecimalsRoom && kNumberRoom >= kShortestRoom);
    if (HasDecimals(value))
        return WriteDecimals(to, value, decimals);
    if (IsPresent(value))
        return WriteShortest(to, value);
    *to = kAbsent;
    return to + 1;
}

std::string ShownLength(double metres) {
    return ShownWith(metres, kLengthDecimals);
}

std::string ShownAngle(double gon) {
    return ShownWith(gon, kAngleDecimals);
}

std::string ShownNumber(double value) {
    return IsPresent(value) ? ShortestNumber(value) : std::string(1, kAbsent);
}

void WidthFinder::Take(std::string_view windows1252) {
    if (IsShownAsItIs(windows1252))
        width_ = std::max(width_, windows1252.size());
    else
        TakeShown(Shown(windows1252));
}

void WidthFinder::Take(double value) {
    if (!HasDecimals(value)) {
        TakeShown(ShownNumber(value));
        return;
    }
    hasNumbers_ = true;
    if (!std::signbit(value))
        largest_ = std::max(largest_, value);
    else if (!(least_ < value))
        least_ = value; // also a negative 0, which is shown with its sign
}

std::size_t WidthFinder::Found(int decimals) const {
    std::size_t width = width_;
    std::array<char, kNumberRoom> digits;
    for (const double value : {largest_, least_}) {
        const char* const end = WriteShown(digits.data(), value, decimals);
        if (hasNumbers_)
            width = std::max(width, static_cast<std::size_t>(end - digits.data()));
    }
    return width;
}

} // namespace convfile::views
