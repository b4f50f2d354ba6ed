#include "routines/CodePage.h"

#include <algorithm>
#include <array>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace {

/// What the bytes 80 to 9F stand for; all others are their own number.
constexpr std::array<char16_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr char32_t kNoCharacter = 0xFFFFFFFF;

struct Decoded {
    char32_t character;
    std::size_t length;
};

/// The first character of a text that is not empty; kNoCharacter and one byte where it is no UTF-8.
Decoded DecodeFirst(std::string_view text) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byteAt(0);
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length)
        return {kNoCharacter, 1};
    char32_t character = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0U) != 0x80)
            return {kNoCharacter, 1};
        character = (character << 6) | (byteAt(i) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < kSmallest[length] || surrogate || character > 0x10FFFF)
        return {kNoCharacter, 1};
    return {character, length};
}

} // namespace

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const Decoded first = DecodeFirst(text);
        if (first.character == kNoCharacter)
            return false;
        text.remove_prefix(first.length);
    }
    return true;
}

char Windows1252FromUnit(char32_t character) {
    const bool itself = character < 0x80 || (character >= 0xA0 && character <= 0xFF);
    if (itself)
        return static_cast<char>(character);
    const auto found = std::ranges::find(kUpperControls, character);
    if (found == kUpperControls.end())
        return '?';
    return static_cast<char>(0x80 + (found - kUpperControls.begin()));
}

std::string Windows1252FromUtf8(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const Decoded first = DecodeFirst(text);
        bytes += Windows1252FromUnit(first.character);
        text.remove_prefix(first.length);
    }
    return bytes;
}

std::string Utf8FromWindows1252(std::string_view text) {
    std::string utf8;
    utf8.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const char32_t character = byte >= 0x80 && byte < 0xA0 ? kUpperControls[byte - 0x80] : byte;
        if (character < 0x80) {
            utf8 += c;
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

#if defined(_WIN32)
std::wstring WideFromSystem(std::string_view bytes) {
    const auto size = static_cast<int>(bytes.size());
    std::wstring wide(bytes.size(), L'\0'); // no code page has more units than bytes
    const int length = MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}
#endif
