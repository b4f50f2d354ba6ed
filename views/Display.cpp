#include "views/Display.h"

#include "host/NoValue.h"
#include "routines/CodePage.h"
#include "routines/Numbers.h"

#include <algorithm>
#include <cmath>

namespace convfile::views {

namespace {

constexpr std::string_view kAbsent = "-";

/// From here on decimals only hide the size of a number.
constexpr double kTooLargeForDecimals = 1e9;

std::string ShownDecimals(double value, int decimals) {
    if (!IsPresent(value) || std::fabs(value) >= kTooLargeForDecimals)
        return ShownNumber(value);
    return StringDaDouble(value, 0, decimals);
}

void AppendEscaped(std::string& shown, unsigned char c) {
    constexpr std::string_view kHex = "0123456789ABCDEF";
    shown += "\\x";
    shown += kHex[c >> 4];
    shown += kHex[c & 0xF];
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

std::string ShownLength(double metres) {
    return ShownDecimals(metres, 4);
}

std::string ShownAngle(double gon) {
    return ShownDecimals(gon, 5);
}

std::string ShownNumber(double value) {
    return IsPresent(value) ? ShortestNumber(value) : std::string(kAbsent);
}

} // namespace convfile::views
