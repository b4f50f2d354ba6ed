#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

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
    const auto isText = [](char c) { return static_cast<unsigned char>(c) > ' '; };
    if (!text.empty() && isText(text.front()) && isText(text.back())) // nearly always
        return text;
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

/// True where `text` is that literal; compared in place, too.
template <std::size_t Size>
constexpr bool Equals(std::string_view text, const char (&literal)[Size]) {
    return text.size() == Size - 1 && Begins(text, literal);
}

/// True where the texts are the same, in one call; comparing them with == takes three.
inline bool Same(std::string_view a, std::string_view b) {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size()) == 0);
}

/// Finds a keyword among the few of a table: their first and last characters tell most of them
/// apart, without a call.
class SameAs {
public:
    explicit constexpr SameAs(std::string_view wanted) : wanted_(wanted) {}

    constexpr bool operator()(std::string_view text) const {
        if (text.size() != wanted_.size())
            return false;
        return text.empty() || (text.front() == wanted_.front() && text.back() == wanted_.back() &&
                                text == wanted_);
    }

private:
    std::string_view wanted_;
};

/// True where `text` holds that character anywhere.
constexpr bool Contains(std::string_view text, char wanted) {
    return text.find(wanted) != std::string_view::npos;
}

/// True where `text` holds `piece` anywhere.
constexpr bool Contains(std::string_view text, std::string_view piece) {
    return text.find(piece) != std::string_view::npos;
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
