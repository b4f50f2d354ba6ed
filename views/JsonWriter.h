#pragma once

#include "host/NoValue.h"
#include "views/Output.h"

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <string_view>

namespace convfile::views {

/// Writes JSON straight into the buffer in front of the output: compact, or indented by two blanks
/// a level. Control characters in texts are escaped, the upper ones (U+007F to U+009F) too, and
/// nothing else but what must be.
template <bool kIndented>
class JsonWriter {
public:
    explicit JsonWriter(Sink& sink) : sink_(sink) {}

    void StartObject() { Start('{'); }
    void EndObject() { End('}'); }
    void StartArray() { Start('['); }
    void EndArray() { End(']'); }

    /// A member's name, which needs no escape.
    void Key(std::string_view name) {
        Separate();
        sink_.Put('"');
        sink_.Write(name);
        sink_.Write(kIndented ? std::string_view("\": ") : std::string_view("\":"));
        isAfterKey_ = true;
    }
    /// A text in UTF-8.
    void Utf8(std::string_view text) {
        BeforeValue();
        sink_.Put('"');
        WriteEscaped(text);
        sink_.Put('"');
    }
    /// A text in Windows-1252.
    void Text(std::string_view text) {
        BeforeValue();
        sink_.Put('"');
        if (PlainLength(text) == text.size())
            sink_.Write(text);
        else
            WriteEscapedText(text);
        sink_.Put('"');
    }
    void Bool(bool value) {
        BeforeValue();
        sink_.Write(value ? "true" : "false");
    }
    void Integer(std::integral auto value) {
        BeforeValue();
        std::array<char, 24> digits;
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
        sink_.Write({digits.data(), end});
    }
    /// With the fewest digits that read back exactly; null where it is absent.
    void Number(double value) {
        BeforeValue();
        if (IsPresent(value))
            sink_.WriteNumber(value);
        else
            sink_.Write("null");
    }

private:
    /// How many bytes at the beginning stand in a text as they are in either code.
    static std::size_t PlainLength(std::string_view text) {
        std::size_t i = 0;
        while (i < text.size() && IsPlain(static_cast<unsigned char>(text[i])))
            ++i;
        return i;
    }
    static constexpr bool IsPlain(unsigned char c) {
        return c >= 0x20 && c < 0x7F && c != '"' && c != '\\';
    }

    void WriteEscapedText(std::string_view windows1252);
    void WriteEscaped(std::string_view utf8);
    void WriteEscape(unsigned char c);

    void Start(char bracket) {
        BeforeValue();
        sink_.Put(bracket);
        ++depth_;
        isFirst_ = true;
    }
    void End(char bracket) {
        --depth_;
        if (!isFirst_)
            BreakLine();
        isFirst_ = false;
        sink_.Put(bracket);
    }
    void BeforeValue() {
        if (!isAfterKey_)
            Separate();
        isAfterKey_ = false;
    }
    /// What stands before a member or an element.
    void Separate() {
        if (depth_ == 0)
            return;
        if (!isFirst_)
            sink_.Put(',');
        isFirst_ = false;
        BreakLine();
    }
    void BreakLine() {
        if constexpr (kIndented) {
            constexpr std::string_view kBreak = "\n                                ";
            sink_.Write(kBreak.substr(0, 1 + 2 * depth_));
        }
    }

    Sink& sink_;
    std::size_t depth_ = 0; ///< less than fits the line break's blanks
    bool isFirst_ = true;   ///< in the object or array that is open
    bool isAfterKey_ = false;
};

} // namespace convfile::views
