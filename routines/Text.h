#pragma once

#include <bit>
#include <string>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Texts, as the converters work on them: bytes in Windows-1252. A blank is the space and the tab,
/// nothing else.

constexpr bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

constexpr std::string_view TrimLeft(std::string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    return text;
}

constexpr std::string_view TrimRight(std::string_view text) {
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

constexpr std::string_view TrimBoth(std::string_view text) {
    return TrimRight(TrimLeft(text));
}

/// Trim a text in place. The first two are part of the host's routine set; nothing here calls them.
void StringTrimLeft(std::string& text);
void StringTrimRight(std::string& text);
void StringTrimBoth(std::string& text);

/// Upper-cases the ASCII letters.
void StringToUpper(std::string& text);

/// Upper-cases one ASCII letter; any other byte stays.
constexpr char UpperAscii(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// True where the texts are the same but for the case of ASCII letters.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

/// Part of a text: `count` characters from `position` on, fewer where the text ends before, none
/// where it starts past the end.
constexpr std::string_view Piece(std::string_view text, std::size_t position,
                                 std::size_t count = std::string_view::npos) {
    return position < text.size() ? text.substr(position, count) : std::string_view{};
}

/// The text without its last character; an empty text loses nothing.
constexpr std::string_view DropLast(std::string_view text) {
    return text.substr(0, text.empty() ? 0 : text.size() - 1);
}

/// The columns of a field, as formats with fixed columns have them.
struct Columns {
    std::size_t first; ///< counted from 0
    std::size_t count;
};

/// The text in those columns; less of it, or none, where the line ends before.
constexpr std::string_view Piece(std::string_view line, Columns columns) {
    return Piece(line, columns.first, columns.count);
}

/// True where `text` begins with that literal; compared in place, without a call.
template <std::size_t Size>
constexpr bool Begins(std::string_view text, const char (&literal)[Size]) {
    constexpr std::size_t kLength = Size - 1;
    bool begins = text.size() >= kLength;
    for (std::size_t i = 0; begins && i < kLength; ++i)
        begins = text[i] == literal[i];
    return begins;
}

/// True where `text` holds `piece` anywhere.
constexpr bool Contains(std::string_view text, std::string_view piece) {
    return text.find(piece) != std::string_view::npos;
}

/// Calls `found` with every position of `wanted`, first to last; sixteen characters at a time where
/// the processor can.
template <class Found>
void ForEachPosition(std::string_view text, char wanted, Found found) {
    std::size_t i = 0;
#if defined(__SSE2__)
    const __m128i pattern = _mm_set1_epi8(wanted);
    for (; i + sizeof pattern <= text.size(); i += sizeof pattern) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + i));
        auto hits = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, pattern)));
        for (; hits != 0; hits &= hits - 1)
            found(i + static_cast<std::size_t>(std::countr_zero(hits)));
    }
#endif
    for (; i < text.size(); ++i) {
        if (text[i] == wanted)
            found(i);
    }
}

/// Cuts `text` at its first `separator`: `field` becomes what stood before it, `text` what follows.
/// Without a separator both stay as they are and the result is false; what that means differs
/// from format to format.
constexpr bool CutAt(std::string_view& text, char separator, std::string_view& field) {
    const std::size_t end = text.find(separator);
    if (end == std::string_view::npos)
        return false;
    field = text.substr(0, end);
    text.remove_prefix(end + 1);
    return true;
}

/// Takes the text up to the first `separator` off the front of `text`; all of it where there is
/// none.
constexpr std::string_view TakeField(std::string_view& text, char separator) {
    std::string_view field = text;
    if (!CutAt(text, separator, field))
        text = {};
    return field;
}
