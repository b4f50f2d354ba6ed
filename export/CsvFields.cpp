#include "export/CsvFields.h"

#include "routines/CodePage.h"

#include <array>

namespace convfile::exports {

namespace {

constexpr bool NeedsQuotes(char c) {
    return c == ',' || c == '"' || c == '\r' || c == '\n';
}

/// True for the bytes that stand in a field as they are.
constexpr auto kPlain = [] {
    std::array<bool, 256> plain{};
    for (std::size_t i = 0; i < 128; ++i)
        plain[i] = !NeedsQuotes(static_cast<char>(i));
    return plain;
}();

} // namespace

bool IsPlainField(std::string_view text) {
    bool plain = true;
    for (const char c : text)
        plain = plain && kPlain[static_cast<unsigned char>(c)];
    return plain;
}

std::string CsvField(std::string_view text) {
    return CsvFieldOfUtf8(Utf8FromWindows1252(text));
}

std::string CsvFieldOfUtf8(std::string_view text) {
    std::string field;
    bool quotes = false;
    for (const char c : text) {
        quotes = quotes || NeedsQuotes(c);
        field.append(c == '"' ? 2 : 1, c);
    }
    return quotes ? '"' + field + '"' : field;
}

} // namespace convfile::exports
