#pragma once

#include <string>
#include <string_view>

namespace convfile::exports {

/// Texts of XML: escaped, UTF-8. What XML forbids, control characters among it, is a blank.
std::string XmlText(std::string_view windows1252);
std::string XmlTextOfUtf8(std::string_view utf8);

/// About how wide a text in Windows-1252 is in the sans-serif faces of browsers, in units of the
/// size of its letters: rather too wide than too narrow.
double TextWidth(std::string_view windows1252);

} // namespace convfile::exports
