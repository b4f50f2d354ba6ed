#pragma once

#include "routines/Text.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// The fields of a line: where its separators stand, and what lies between them. For formats that
/// cut every line into many; others take a field off its front with the routines of Text.h.

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
#if defined(__SSE2__)
    constexpr std::size_t kWidth = sizeof(__m128i);
    if (text.size() > kWidth) {
        __m128i hits = _mm_setzero_si128();
        const auto look = [&](std::size_t at) {
            const void* const before = text.data() + at;
            const void* const behind = text.data() + at + 1;
            const __m128i firsts = _mm_cmpeq_epi8(
                _mm_loadu_si128(static_cast<const __m128i*>(before)), _mm_set1_epi8(first));
            const __m128i seconds = _mm_cmpeq_epi8(
                _mm_loadu_si128(static_cast<const __m128i*>(behind)), _mm_set1_epi8(second));
            hits = _mm_or_si128(hits, _mm_and_si128(firsts, seconds));
        };
        const std::size_t last = text.size() - kWidth - 1; // where the last sixteen pairs begin
        for (std::size_t at = 0; at < last; at += kWidth)
            look(at);
        look(last);
        return _mm_movemask_epi8(hits) != 0;
    }
#endif
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
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
