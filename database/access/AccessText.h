#pragma once

#include <string>
#include <string_view>

namespace convfile::database {

/// How a compressed text begins.
inline constexpr std::string_view kCompressed{"\xFF\xFE", 2};

/// A text as an Access file has it, in Windows-1252: one byte a character in Jet 3, later UTF-16,
/// which may be compressed. "?" for each UTF-16 unit that the code page lacks.
std::string DecodeText(std::string_view bytes, bool jet3);

/// What ADO gives as the text of a value of that kind: "." as decimal point, no trailing zeros.
std::string TextOfReal(double value, int significantDigits);
/// `units` are ten-thousandths.
std::string TextOfCurrency(long long units);
/// A GUID, in braces, of its 16 bytes, which must be there.
std::string TextOfGuid(std::string_view bytes);
/// A Numeric of its 17 bytes, which must be there: sign, and four words of its digits, the last
/// `scale` behind the point.
std::string TextOfNumeric(std::string_view bytes, int scale);

} // namespace convfile::database
