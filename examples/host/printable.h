#pragma once

#include <string>
#include <string_view>

namespace example {

/// A text of a field book or a message (Windows-1252) for a terminal: UTF-8 in one line. A control
/// character becomes a blank, so that a file cannot steer the terminal it is shown on; so do the
/// five bytes that the code page leaves unused.
inline std::string Printable(std::string_view windows1252) {
    constexpr char16_t kUnused = ' ';
    static constexpr char16_t kFrom80To9F[] = {
        0x20AC, kUnused, 0x201A,  0x0192, 0x201E,  0x2026,  0x2020, 0x2021,  0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152,  kUnused, 0x017D, kUnused, kUnused, 0x2018, 0x2019,  0x201C, 0x201D, 0x2022,
        0x2013, 0x2014,  0x02DC,  0x2122, 0x0161,  0x203A,  0x0153, kUnused, 0x017E, 0x0178};
    std::string utf8;
    for (const char c : windows1252) {
        const auto byte = static_cast<unsigned char>(c);
        const char16_t character = byte >= 0x80 && byte <= 0x9F ? kFrom80To9F[byte - 0x80] : byte;
        if (character < 0x80) {
            utf8 += character < 0x20 || character == 0x7F ? ' ' : static_cast<char>(character);
        } else if (character < 0x800) {
            utf8 += static_cast<char>(0xC0 | (character >> 6));
            utf8 += static_cast<char>(0x80 | (character & 0x3F));
        } else {
            utf8 += static_cast<char>(0xE0 | (character >> 12));
            utf8 += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
            utf8 += static_cast<char>(0x80 | (character & 0x3F));
        }
    }
    return utf8;
}

} // namespace example
