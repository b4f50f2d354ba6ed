#pragma once

#include "routines/OutputBuffer.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

/// Fields of comma-separated values as RFC 4180 has them: in quotes, and these doubled, where a
/// text holds a comma, a quote or a line end. Lines end in CR LF, texts are UTF-8.
namespace convfile::exports {

inline constexpr std::string_view kCsvLineEnd = "\r\n";

/// True where a text is ASCII and needs no quotes: the field is the text.
bool IsPlainField(std::string_view text);

/// The field of a text in Windows-1252.
std::string CsvField(std::string_view text);

/// The field of a text that is UTF-8 already.
std::string CsvFieldOfUtf8(std::string_view text);

inline void WriteField(OutputBuffer& out, std::string_view text) {
    if (IsPlainField(text))
        out.Write(text);
    else
        out.Write(CsvField(text));
}

/// An absent number, and what is none, is an empty field.
inline void WriteField(OutputBuffer& out, double number) {
    if (IsPresent(number) && std::isfinite(number))
        out.WriteNumber(number);
}

/// A count; 0 is an empty field where it stands for "none".
inline void WriteLine(OutputBuffer& out, std::uint64_t line) {
    if (line != 0)
        out.WriteNumber(static_cast<double>(line));
}

} // namespace convfile::exports
