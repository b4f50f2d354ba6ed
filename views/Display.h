#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace convfile::views {

/// A text of the field book for a terminal: UTF-8, control characters made visible ("\x1B"), so
/// that a file cannot steer the terminal it is shown on.
std::string Shown(std::string_view windows1252);

/// True where every character of it is shown as it is, in one column: nearly always.
bool IsShownAsItIs(std::string_view windows1252);

/// The same for a text that is UTF-8 already.
std::string ShownUtf8(std::string_view utf8);

/// How many columns a shown text takes.
std::size_t ShownWidth(std::string_view utf8);

/// How many decimals a length in metres and an angle in gon are shown with.
inline constexpr int kLengthDecimals = 4;
inline constexpr int kAngleDecimals = 5;
/// Writes a number with so many decimals, as short as it reads back where it is so large that they
/// would only hide its size; "-" where absent. Gives its end; there is to be room for kNumberRoom
/// characters.
char* WriteShown(char* to, double value, int decimals);
inline constexpr std::size_t kNumberRoom = 32;
/// The same as texts.
std::string ShownLength(double metres);
std::string ShownAngle(double gon);
/// A number as short as it reads back; "-" where absent.
std::string ShownNumber(double value);

/// The width of the widest of many cells, most of which need not be made for it: no number that is
/// shown with decimals is wider than both the largest and the least.
class WidthFinder {
public:
    /// A text of the field book.
    void Take(std::string_view windows1252);
    /// A number that WriteShown shows.
    void Take(double value);
    void TakeShown(std::string_view utf8) { width_ = std::max(width_, ShownWidth(utf8)); }
    /// Of all of them, the numbers with so many decimals.
    std::size_t Found(int decimals) const;

private:
    std::size_t width_ = 0; ///< of all but the numbers with decimals
    double largest_ = 0;
    double least_ = 0;
    bool hasNumbers_ = false;
};

} // namespace convfile::views
