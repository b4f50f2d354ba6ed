#pragma once

#include "host/NoValue.h"

#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>

/// Numbers of instrument files. Read and written with a decimal point on every machine: the
/// process's locale is never asked.

/// Reads the decimal number at the start of the text: leading blanks, an optional sign, digits with
/// an optional ".", an optional decimal exponent; what follows is ignored. No hexadecimal, "inf" or
/// "nan". One too large for a double is the no-value marker, one too small is 0. Gives how many
/// characters it takes, the leading blanks counted; 0, and `number` left as it was, where the text
/// starts with no number.
std::size_t NumberAtStart(std::string_view text, double& number);

/// True where the text is a number and nothing else, of a sign, digits and a point: faster to tell
/// than the number.
bool IsPlainNumber(std::string_view text);

/// The number at the start of the text; the no-value marker where it starts with none.
double NumberOrNoValue(std::string_view text);

/// The number at the start of the text; 0 where there is none (converters rely on it: a distance
/// read as 0 was not measured).
double DoubleDaString(std::string_view text);

/// The number at the start of the text, divided, as formats that leave the decimal point out need
/// it; an absent one stays absent.
double DividedNumber(std::string_view text, double divisor);

/// As DoubleDaString, for a C string. Part of the host's routine set; nothing here calls it.
double tsk_atof(const char* text);

/// The integer at the start of the text: leading blanks, an optional sign, digits. 0 where there
/// are no digits, or where the value does not fit the type; a long has 32 bits on every system.
short IntDaStringNullZero(std::string_view text);
long LongDaStringNullZero(std::string_view text);

/// The text of a number that leaves its decimal point out, with a "." before its last `decimals`
/// characters. A text that has a "." or is too short to take one stays as it is.
std::string WithImpliedPoint(std::string_view text, std::size_t decimals);

/// The value with that many decimals (0 to 100), padded with spaces on the left to `width` (0 or
/// more), as sprintf's "%*.*f" writes it in the C locale.
std::string StringDaDouble(double value, int width, int decimals);

/// The same without padding, of a number below 10^9 with 0 to 6 decimals, written to where there is
/// room for kDecimalsRoom characters; gives their end.
char* WriteDecimals(char* to, double value, int decimals);
inline constexpr std::size_t kDecimalsRoom = 20;

/// The fewest digits that read back as the same number; with an exponent only where the number is
/// below 0.0001 or has more than 16 digits before its point.
std::string ShortestNumber(double value);

/// The same, written to where there is room for kShortestRoom characters; gives their end.
char* WriteShortest(char* to, double value);
inline constexpr std::size_t kShortestRoom = 32;

/// The value rounded to that number of decimals (0 to 22), halves away from zero. An absent or
/// non-finite value, or one too large to be scaled, stays as it is.
double ArrotondatoAtDec(double value, int decimals);

/// The value rounded to the nearest multiple of `step`, halves away from zero; as above where it
/// cannot be. Part of the host's routine set; nothing here calls it.
double ArrotondatoAlVal(double value, double step);

/// The nearest integer, halves away from zero; outside the range of a 32-bit integer the nearest
/// end of it (0 for a NaN).
long LongRound(double value);

/// LongRound(value x scale) / scale: how some formats keep millimetres, or decimals of a gon. An
/// absent value, and one whose scaled form fits no 32-bit integer, stays as it is.
double RoundedByLong(double value, double scale);

/// A measurement as it goes into the field book: the no-value marker where arithmetic on bad input
/// left no finite number, and no negative zero (atan and "-0" give one).
inline double FiniteOrNoValue(double value) {
    return std::isfinite(value) ? value + 0.0 : kNoValue;
}

/// The number at the start of a text, as it goes into the field book or the cadastral document
/// where no further arithmetic is done.
inline double NumberForBook(std::string_view text) {
    return FiniteOrNoValue(DoubleDaString(text));
}

/// A slope distance as read: exactly 0 means that no distance was measured.
constexpr double DistanceOrNoValue(double distance) {
    return distance == 0 ? kNoValue : distance;
}
