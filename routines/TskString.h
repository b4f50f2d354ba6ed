#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace tsk {

/// A text for work on single characters. Positions are 0-based; every operation that looks as if
/// it changed the text returns a new one and leaves this one as it is. Positions and counts out of
/// range reach as far as the text does. Part of the host's routine set: the library itself only
/// makes such texts, for MessageBoxWithLink, and hosts read them.
class String {
public:
    String() = default;
    String(const char* text) : text_(text ? text : "") {} // NOLINT(google-explicit-constructor)

    int Length() const { return static_cast<int>(text_.size()); }
    const char* CStr() const { return text_.c_str(); }

    /// The character at that position; NUL where there is none.
    char ReadChar(int position) const { return Holds(position) ? text_[Index(position)] : '\0'; }
    String WriteChar(int position, char c) const {
        String changed = *this;
        if (Holds(position))
            changed.text_[Index(position)] = c;
        return changed;
    }

    /// The first `c` at or after `from`; -1 where there is none.
    int IndexOf(char c, int from = 0) const {
        return Position(text_.find(c, Index(std::max(from, 0))));
    }
    /// The last `c` at or before `from`; -1 where there is none.
    int LastIndexOf(char c, int from) const {
        return from < 0 ? -1 : Position(text_.rfind(c, Index(from)));
    }

    String Substring(int from) const { return Substring(from, Length()); }
    String Substring(int from, int count) const {
        const std::size_t start = Start(from);
        return String(std::string_view(text_).substr(start, Count(count)));
    }
    String Erase(int from, int count) const {
        String changed = *this;
        changed.text_.erase(Start(from), Count(count));
        return changed;
    }
    /// Replaces every `before` by `after`.
    String Replace(char before, char after) const {
        String changed = *this;
        std::ranges::replace(changed.text_, before, after);
        return changed;
    }
    /// Removes every `c` at the start.
    String TrimLeft(char c) const {
        return String(
            std::string_view(text_).substr(std::min(text_.size(), text_.find_first_not_of(c))));
    }
    String Concat(const String& other) const {
        String changed = *this;
        changed.text_ += other.text_;
        return changed;
    }

    friend String operator+(const String& text, const char* more) { return text.Concat(more); }

private:
    explicit String(std::string_view text) : text_(text) {}

    static std::size_t Index(int position) { return static_cast<std::size_t>(position); }
    static int Position(std::size_t found) {
        return found == std::string::npos ? -1 : static_cast<int>(found);
    }
    static std::size_t Count(int count) { return Index(std::max(count, 0)); }
    bool Holds(int position) const { return position >= 0 && position < Length(); }
    std::size_t Start(int from) const { return Index(std::clamp(from, 0, Length())); }

    std::string text_;
};

} // namespace tsk
