#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
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

/// Finds the positions of a character in a text, first to last; looks at sixty-four characters at
/// once where the processor can.
class Positions {
public:
    Positions(std::string_view text, char wanted) : text_(text), wanted_(wanted) {}

    static constexpr std::size_t kNone = std::string_view::npos;

    /// The next one; kNone behind the last.
    [[gnu::always_inline]] std::size_t Next() {
        while (hits_ == 0) {
            if (next_ >= text_.size())
                return kNone;
            Look();
        }
        const std::size_t position = block_ + static_cast<std::size_t>(std::countr_zero(hits_));
        hits_ &= hits_ - 1;
        return position;
    }

private:
    /// Marks the hits among the next characters.
    [[gnu::noinline]] void Look() {
        block_ = next_;
#if defined(__SSE2__)
        if (text_.size() >= kWidth) [[likely]] {
            std::size_t bits = 0;
            for (; bits < 64 && text_.size() - next_ >= kWidth; bits += kWidth, next_ += kWidth)
                hits_ |= HitsAt(next_) << bits;
            if (bits < 64 && next_ < text_.size()) { // the last sixteen, of which some are known
                const std::size_t last = text_.size() - kWidth;
                hits_ |= HitsAt(last) >> (next_ - last) << bits;
                next_ = text_.size();
            }
            return;
        }
#endif
        hits_ = text_[next_++] == wanted_ ? 1 : 0;
    }

#if defined(__SSE2__)
    static constexpr std::size_t kWidth = sizeof(__m128i);

    /// The hits among sixteen characters from there on.
    std::uint64_t HitsAt(std::size_t at) const {
        const void* const sixteen = text_.data() + at;
        const __m128i bytes = _mm_loadu_si128(static_cast<const __m128i*>(sixteen));
        const __m128i equal = _mm_cmpeq_epi8(bytes, _mm_set1_epi8(wanted_));
        return static_cast<std::uint32_t>(_mm_movemask_epi8(equal));
    }
#endif

    std::string_view text_;
    char wanted_;
    std::size_t next_ = 0;   ///< not yet looked at, from here on
    std::size_t block_ = 0;  ///< where those begin that were looked at last
    std::uint64_t hits_ = 0; ///< of them, a bit each: those not yet given
};

/// True where `first` stands directly before `second` anywhere.
inline bool HoldsPair(std::string_view text, char first, char second) {
    std::size_t i = 0;
#if defined(__SSE2__)
    constexpr std::size_t kWidth = sizeof(__m128i);
    __m128i hits = _mm_setzero_si128();
    for (; i + kWidth < text.size(); i += kWidth) {
        const void* const before = text.data() + i;
        const void* const behind = text.data() + i + 1;
        hits = _mm_or_si128(
            hits, _mm_and_si128(_mm_cmpeq_epi8(_mm_loadu_si128(static_cast<const __m128i*>(before)),
                                               _mm_set1_epi8(first)),
                                _mm_cmpeq_epi8(_mm_loadu_si128(static_cast<const __m128i*>(behind)),
                                               _mm_set1_epi8(second))));
    }
    if (_mm_movemask_epi8(hits) != 0)
        return true;
#endif
    for (; i + 1 < text.size(); ++i) {
        if (text[i] == first && text[i + 1] == second)
            return true;
    }
    return false;
}

/// Calls `found` with every position of `wanted`, first to last.
template <class Found>
void ForEachPosition(std::string_view text, char wanted, Found found) {
    Positions positions(text, wanted);
    for (std::size_t i = positions.Next(); i != Positions::kNone; i = positions.Next())
        found(i);
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

/// Cuts fields off the front of a text, as CutAt one after the other, but in one pass.
class FieldCutter {
public:
    FieldCutter(std::string_view text, char separator)
        : text_(text), separators_(text, separator) {}

    /// The next field, without the blanks around it; an empty one where no separator is left.
    [[gnu::always_inline]] std::string_view Next() {
        const std::size_t end = separators_.Next();
        if (end == Positions::kNone)
            return {};
        const std::string_view field(text_.data() + begin_, end - begin_);
        begin_ = end + 1;
        ++count_;
        return TrimBoth(field);
    }
    /// How many were cut off.
    std::size_t Count() const { return count_; }
    /// What is left of the text.
    std::string_view Rest() const { return text_.substr(begin_); }

private:
    std::string_view text_;
    Positions separators_;
    std::size_t begin_ = 0;
    std::size_t count_ = 0;
};

/// Takes the text up to the first `separator` off the front of `text`; all of it where there is
/// none.
constexpr std::string_view TakeField(std::string_view& text, char separator) {
    std::string_view field = text;
    if (!CutAt(text, separator, field))
        text = {};
    return field;
}
