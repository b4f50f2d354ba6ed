#include "views/JsonWriter.h"

#include "routines/CodePage.h"

namespace convfile::views {

namespace {

/// In UTF-8, the first byte of U+0080 to U+00BF.
constexpr unsigned char kUpperLead = 0xC2;

} // namespace

template <bool kIndented>
void JsonWriter<kIndented>::WriteEscapedText(std::string_view windows1252) {
    WriteEscaped(Utf8FromWindows1252(windows1252));
}

template <bool kIndented>
void JsonWriter<kIndented>::WriteEscaped(std::string_view utf8) {
    while (true) {
        const std::size_t plain = PlainLength(utf8);
        sink_.Write(utf8.substr(0, plain));
        utf8.remove_prefix(plain);
        if (utf8.empty())
            return;
        auto c = static_cast<unsigned char>(utf8.front());
        utf8.remove_prefix(1);
        if (c < 0x80) {
            WriteEscape(c);
        } else if (c == kUpperLead && !utf8.empty() &&
                   static_cast<unsigned char>(utf8.front()) < 0xA0) {
            WriteEscape(static_cast<unsigned char>(utf8.front()));
            utf8.remove_prefix(1);
        } else {
            sink_.Put(static_cast<char>(c));
        }
    }
}

template <bool kIndented>
void JsonWriter<kIndented>::WriteEscape(unsigned char c) {
    constexpr std::string_view kHex = "0123456789ABCDEF";
    constexpr std::string_view kShort = "\"\\\b\f\n\r\t";
    constexpr std::string_view kLetters = "\"\\bfnrt";
    const std::size_t letter = kShort.find(static_cast<char>(c));
    sink_.Put('\\');
    if (letter != std::string_view::npos) {
        sink_.Put(kLetters[letter]);
        return;
    }
    sink_.Write("u00");
    sink_.Put(kHex[c >> 4]);
    sink_.Put(kHex[c & 0xF]);
}

template class JsonWriter<true>;
template class JsonWriter<false>;

} // namespace convfile::views
