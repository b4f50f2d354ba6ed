#pragma once

#include <string>
#include <string_view>

namespace convfile::views {

/// A text of the field book for a terminal: UTF-8, control characters made visible ("\x1B"), so
/// that a file cannot steer the terminal it is shown on.
std::string Shown(std::string_view windows1252);

/// The same for a text that is UTF-8 already.
std::string ShownUtf8(std::string_view utf8);

/// How many columns a shown text takes.
std::size_t ShownWidth(std::string_view utf8);

/// A length in metres with four decimals, an angle in gon with five; "-" where absent.
std::string ShownLength(double metres);
std::string ShownAngle(double gon);
/// A number as short as it reads back; "-" where absent.
std::string ShownNumber(double value);

} // namespace convfile::views
