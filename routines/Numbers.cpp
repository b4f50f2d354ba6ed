#include "routines/Numbers.h"

#include "routines/Text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <system_error>

#if !defined(__cpp_lib_to_chars)
#include <fast_float/fast_float.h>
#endif

namespace {

/// std::from_chars, also where the standard library has none for a double, as that for WebAssembly.
std::from_chars_result DoubleFromChars(const char* begin, const char* end, double& value) {
#if defined(__cpp_lib_to_chars)
    return std::from_chars(begin, end, value);
#else
    const auto result = fast_float::from_chars(begin, end, value);
    return {result.ptr, std::isinf(value) ? std::errc::result_out_of_range : result.ec};
#endif
}

constexpr bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Drops leading blanks and a plus sign, which std::from_chars does not take; everything where a
/// minus sign follows it.
std::string_view NumberText(std::string_view text) {
    text = TrimLeft(text);
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-'))
            return {};
    }
    return text;
}

/// Tells a number that is too large for a double from one that is too small: by the power of ten
/// of its first digit other than 0. Only asked where std::from_chars could represent neither.
bool IsTooLarge(std::string_view number) {
    number.remove_prefix(number.starts_with('-') ? 1 : 0);
    std::int64_t power = 0;
    bool pointSeen = false;
    bool leading = true;
    std::size_t i = 0;
    for (; i < number.size() && (IsDigit(number[i]) || number[i] == '.'); ++i) {
        if (number[i] == '.') {
            pointSeen = true;
            continue;
        }
        leading = leading && number[i] == '0';
        if (leading)
            power -= pointSeen ? 1 : 0;
        else
            power += pointSeen ? 0 : 1;
    }
    if (i == number.size())
        return power > 0;
    number.remove_prefix(i + 1); // the "e"
    const bool negative = number.starts_with('-');
    if (negative || number.starts_with('+'))
        number.remove_prefix(1);
    constexpr std::int64_t kFarAway = 1'000'000'000;
    std::int64_t exponent = 0;
    for (const char digit : number)
        exponent = std::min(exponent * 10 + (digit - '0'), kFarAway);
    return power + (negative ? -exponent : exponent) > 0;
}

/// Powers of ten, by multiplication: exact up to 10^22 on every machine, which pow() is not.
constexpr auto kPowersOfTen = [] {
    std::array<double, 23> powers{};
    double power = 1;
    for (double& each : powers) {
        each = power;
        power *= 10;
    }
    return powers;
}();

/// Eight digits, the first in the lowest byte, as numbers of two, then four, then eight digits: by
/// multiplications that add neighbours.
constexpr std::uint64_t NumberOfDigits(std::uint64_t digits) {
    digits = (digits * 2561) >> 8;
    digits = ((digits & 0x00FF00FF00FF00FF) * 6553601) >> 16;
    return ((digits & 0x0000FFFF0000FFFF) * 42949672960001) >> 32;
}

/// Texts of up to eight characters are looked at as a whole: one word, the first in its lowest
/// byte.
constexpr bool kLooksAtWords = std::endian::native == std::endian::little;
constexpr std::uint64_t kDigitsOnly = 0x3030303030303030;
constexpr std::uint64_t kPointByte = '.' ^ '0';

constexpr bool IsShort(std::string_view text) {
    return kLooksAtWords && text.size() - 1 < 8;
}

/// The characters of a short text, the last in the highest byte; of a digit 0 to 9 remain, and 0
/// before the first. What lies around the text is not looked at.
std::uint64_t WordOf(std::string_view text) {
    const char* const bytes = text.data();
    const std::size_t size = text.size();
    const std::size_t missing = 8 * (8 - size); // bits
    if (size >= 4) [[likely]] {
        std::uint32_t first = 0;
        std::uint32_t last = 0;
        std::memcpy(&first, bytes, sizeof first);
        std::memcpy(&last, bytes + size - sizeof last, sizeof last);
        // Both hold as many characters in common as are missing, in the same places.
        const std::uint64_t word = std::uint64_t{last} << 32 | std::uint64_t{first} << missing;
        return word ^ kDigitsOnly << missing;
    }
    // First, middle and last, of which some are the same one.
    std::uint64_t word = 0;
    for (const std::size_t i : {std::size_t{0}, size / 2, size - 1})
        word |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << 8 * i;
    return (word ^ kDigitsOnly) << missing;
}

/// The highest bit of every byte of such a word that is no digit; perhaps of one above it, too.
constexpr std::uint64_t NoDigits(std::uint64_t word) {
    // 118 can be added to 9 below 128.
    return (word | (word + 0x7676767676767676)) & 0x8080808080808080;
}

/// The next eight characters as such a word.
inline std::uint64_t NextWord(const char* text) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, text, sizeof bytes);
    return bytes ^ kDigitsOnly;
}

/// True where exactly one byte is marked so, and is the ".".
constexpr bool IsOnePoint(std::uint64_t word, std::uint64_t marked) {
    return (marked & (marked - 1)) == 0 &&
           (word >> (std::countr_zero(marked) - 7) & 0xFF) == kPointByte;
}

/// True where a short text, whose word that is, is digits with at most one "." among them.
constexpr bool IsDecimal(std::string_view text, std::uint64_t word, std::uint64_t marked) {
    return marked == 0 || (IsOnePoint(word, marked) && text.size() > 1);
}

/// The number of a word's digits without the "." at that bit.
inline double NumberAround(std::uint64_t word, int point) {
    const std::uint64_t before = (std::uint64_t{1} << point) - 1;
    const std::uint64_t digits = (word & before) << 8 | (word & (~before << 8));
    const auto decimals = static_cast<std::size_t>(56 - point) / 8;
    return static_cast<double>(NumberOfDigits(digits)) / kPowersOfTen[decimals];
}

/// Reads a short text of digits with at most one "." among them. False where it is another.
[[gnu::always_inline]] inline bool ReadShortDecimal(std::string_view text, double& number) {
    const std::uint64_t word = WordOf(text);
    const std::uint64_t marked = NoDigits(word);
    if (!IsDecimal(text, word, marked))
        return false;
    number = marked == 0 ? static_cast<double>(NumberOfDigits(word))
                         : NumberAround(word, std::countr_zero(marked) - 7);
    return true;
}

/// Reads the number of up to seven characters that a word begins with, which is how fields of fixed
/// width have theirs; the marks are those of its bytes. Gives how many characters it takes; 0 where
/// it is another.
std::size_t ReadPaddedDecimal(std::uint64_t word, std::uint64_t marked, double& number) {
    int point = -1;
    if ((word >> (std::countr_zero(marked) - 7) & 0xFF) == kPointByte) {
        point = std::countr_zero(marked) - 7;
        marked &= marked - 1;
    }
    if (marked == 0)
        return 0;                                 // goes on
    const int end = std::countr_zero(marked) - 7; // in bits
    const auto behind = static_cast<char>((word ^ kDigitsOnly) >> end & 0xFF);
    if (end < 16 || behind == 'e' || behind == 'E')
        return 0;
    const int missing = 64 - end;
    word <<= missing;
    number =
        point < 0 ? static_cast<double>(NumberOfDigits(word)) : NumberAround(word, point + missing);
    return static_cast<std::size_t>(end) / 8;
}

/// Reads what nearly every field of an instrument file is: up to nineteen digits that make no more
/// than 2^53, a "." among them or not, and no exponent. Both parts of the quotient are then exact,
/// so it is the double nearest to the number, as the general routine gives it, in a fraction of the
/// time. Gives the end of the number; null where it is another.
const char* PlainDecimal(std::string_view text, double& number) {
    constexpr std::ptrdiff_t kMostDigits = 19; // fit 64 bits
    constexpr std::uint64_t kLargestExact = std::uint64_t{1} << 53;
    const char* at = text.data();
    const char* const end = at + text.size();
    std::uint64_t digits = 0;
    if (kLooksAtWords && text.size() >= sizeof(std::uint64_t)) {
        const std::uint64_t word = NextWord(at);
        const std::uint64_t marked = NoDigits(word);
        if (marked == 0) {
            digits = NumberOfDigits(word);
            at += sizeof word;
        } else if (const std::size_t taken = ReadPaddedDecimal(word, marked, number)) {
            return at + taken;
        }
    }
    const auto readDigits = [&] {
        if constexpr (kLooksAtWords) {
            for (; end - at >= 8 && NoDigits(NextWord(at)) == 0; at += 8)
                digits = digits * 100000000 + NumberOfDigits(NextWord(at));
        }
        for (; at != end && IsDigit(*at); ++at)
            digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
        return at;
    };

    std::ptrdiff_t count = readDigits() - text.data();
    std::ptrdiff_t decimals = 0;
    if (at != end && *at == '.') {
        const char* const fraction = ++at;
        decimals = readDigits() - fraction;
        count += decimals;
    }
    const bool exponentMayFollow = at != end && (*at == 'e' || *at == 'E');
    if (count == 0 || count > kMostDigits || digits > kLargestExact || exponentMayFollow)
        return nullptr;
    number = static_cast<double>(digits);
    if (decimals > 0)
        number /= kPowersOfTen[static_cast<std::size_t>(decimals)];
    return at;
}

/// What is no short text of digits and a "." alone.
[[gnu::noinline]] std::size_t OtherNumberAtStart(std::string_view text, double& number) {
    const char* const begin = text.data();
    const auto lengthTo = [begin](const char* end) {
        return static_cast<std::size_t>(end - begin);
    };
    if (!text.empty() && IsDigit(text[0])) {
        if (const char* const end = PlainDecimal(text, number))
            return lengthTo(end); // nearly always
    }
    text = NumberText(text);
    const std::size_t digits = text.starts_with('-') ? 1 : 0;
    if (const char* const end = PlainDecimal(text.substr(digits), number)) {
        number = digits == 0 ? number : -number;
        return lengthTo(end);
    }
    if (digits >= text.size() || !(IsDigit(text[digits]) || text[digits] == '.'))
        return 0; // also keeps out what from_chars would take: "inf", "nan"
    double value = 0;
    const auto [end, error] = DoubleFromChars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) {
        const auto length = static_cast<std::size_t>(end - text.data());
        value = IsTooLarge(text.substr(0, length)) ? kNoValue : 0.0;
    } else if (error != std::errc{}) {
        return 0;
    }
    number = value;
    return lengthTo(end);
}

template <class Integer>
Integer IntegerAtStart(std::string_view text) {
    text = NumberText(text);
    Integer value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// Most numbers of a field book have at most six decimals and fifteen digits. Of those no two are
/// the same double: the one that gives the value back is the one with the fewest digits.
constexpr double kFewDecimals = 1e6;
constexpr int kFewPlaces = 6;
constexpr double kFewDecimalsBelow = 1e9;

/// The digits of the numbers 0 to 99, two each.
constexpr auto kPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

/// Writes a number of millionths.
char* WriteFewDecimals(char* to, bool negative, std::uint64_t millionths) {
    if (negative)
        *to++ = '-';
    const auto whole = static_cast<std::uint32_t>(millionths / 1'000'000);
    auto rest = static_cast<std::uint32_t>(millionths % 1'000'000);
    to = std::to_chars(to, to + 10, whole).ptr;
    if (rest == 0)
        return to;
    *to++ = '.';
    for (std::size_t i = 3; i-- > 0; rest /= 100)
        std::memcpy(to + 2 * i, &kPairs[std::size_t{2} * (rest % 100)], 2);
    to += 6;
    while (to[-1] == '0')
        --to;
    return to;
}

/// Writes a number of units of the last of so many decimals (0 to 6), from behind.
char* WriteScaled(char* to, bool negative, std::uint64_t scaled, std::size_t decimals) {
    std::array<char, kDecimalsRoom> digits;
    char* const end = digits.data() + digits.size();
    char* at = end;
    for (std::size_t left = decimals; left > 0; --left, scaled /= 10)
        *--at = static_cast<char>('0' + scaled % 10);
    if (decimals > 0)
        *--at = '.';
    for (; scaled >= 10; scaled /= 100)
        std::memcpy(at -= 2, &kPairs[2 * (scaled % 100)], 2);
    if (scaled > 0 || at == end || *at == '.')
        *--at = static_cast<char>('0' + scaled);
    if (negative)
        *--at = '-';
    const auto size = static_cast<std::size_t>(end - at);
    std::memcpy(to, at, size);
    return to + size;
}

} // namespace

std::size_t NumberAtStart(std::string_view text, double& number) {
    if (IsShort(text) && ReadShortDecimal(text, number)) [[likely]]
        return text.size();
    return OtherNumberAtStart(text, number);
}

bool IsPlainNumber(std::string_view text) {
    if (IsShort(text)) {
        const std::uint64_t word = WordOf(text);
        if (IsDecimal(text, word, NoDigits(word)))
            return true; // nearly always
    }
    const std::size_t size = text.size();
    std::size_t i = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
    const auto skipDigits = [&] {
        const std::size_t from = i;
        while (i < size && IsDigit(text[i]))
            ++i;
        return i > from;
    };
    bool hasDigits = skipDigits();
    if (i < size && text[i] == '.') {
        ++i;
        hasDigits = skipDigits() || hasDigits;
    }
    return hasDigits && i == size;
}

double NumberOrNoValue(std::string_view text) {
    double number = kNoValue;
    NumberAtStart(text, number);
    return number;
}

double DoubleDaString(std::string_view text) {
    double number = 0;
    NumberAtStart(text, number);
    return number;
}

double DividedNumber(std::string_view text, double divisor) {
    const double number = DoubleDaString(text);
    return IsPresent(number) ? number / divisor : number;
}

double tsk_atof(const char* text) {
    return DoubleDaString(text);
}

short IntDaStringNullZero(std::string_view text) {
    return IntegerAtStart<short>(text);
}

long LongDaStringNullZero(std::string_view text) {
    return IntegerAtStart<std::int32_t>(text);
}

std::string WithImpliedPoint(std::string_view text, std::size_t decimals) {
    std::string pointed(text);
    if (text.size() >= decimals && text.find('.') == std::string_view::npos)
        pointed.insert(text.size() - decimals, 1, '.');
    return pointed;
}

std::string StringDaDouble(double value, int width, int decimals) {
    // The longest double has 309 digits before the point.
    std::array<char, 512> buffer;
    const int places = std::clamp(decimals, 0, 100);
    char* end = buffer.data();
    if (std::fabs(value) < kFewDecimalsBelow && places <= kFewPlaces)
        end = WriteDecimals(buffer.data(), value, places);
    else
        end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                            std::chars_format::fixed, places)
                  .ptr;
    const auto size = static_cast<std::size_t>(end - buffer.data());
    const auto wanted = static_cast<std::size_t>(std::max(width, 0));
    std::string text(std::max(size, wanted) - size, ' ');
    return text.append(buffer.data(), size);
}

char* WriteDecimals(char* to, double value, int decimals) {
    // What is scaled is off by no more than 2^-13, so that only what is near to a half is in doubt.
    constexpr double kMost = 0x1p40;
    constexpr double kDoubt = 0x1p-10;
    const auto places = static_cast<std::size_t>(decimals);
    const double scaled = std::fabs(value) * kPowersOfTen[places];
    if (scaled < kMost) {
        const auto whole = static_cast<std::uint64_t>(scaled);
        const double rest = scaled - static_cast<double>(whole);
        if (std::fabs(rest - 0.5) > kDoubt)
            return WriteScaled(to, std::signbit(value), whole + (rest > 0.5 ? 1 : 0), places);
    }
    return std::to_chars(to, to + kDecimalsRoom, value, std::chars_format::fixed, decimals).ptr;
}

std::string ShortestNumber(double value) {
    std::array<char, kShortestRoom> digits{};
    return {digits.data(), WriteShortest(digits.data(), value)};
}

char* WriteShortest(char* to, double value) {
    const double size = std::fabs(value);
    const bool plain = size == 0 || (size >= 1e-4 && size < 1e16);
    if (plain && size < kFewDecimalsBelow) {
        const double halfMore = size * kFewDecimals + 0.5; // what is rounded wrongly fails here:
        const auto scaled = static_cast<std::uint64_t>(halfMore);
        if (static_cast<double>(scaled) / kFewDecimals == size)
            return WriteFewDecimals(to, std::signbit(value), scaled);
    }
    return std::to_chars(to, to + kShortestRoom, value,
                         plain ? std::chars_format::fixed : std::chars_format::scientific)
        .ptr;
}

double ArrotondatoAtDec(double value, int decimals) {
    if (!IsPresent(value))
        return value;
    constexpr int kMost = static_cast<int>(kPowersOfTen.size()) - 1;
    const double scale = kPowersOfTen[static_cast<std::size_t>(std::clamp(decimals, 0, kMost))];
    const double rounded = std::round(value * scale) / scale;
    return std::isfinite(rounded) ? rounded : value;
}

double ArrotondatoAlVal(double value, double step) {
    if (!IsPresent(value))
        return value;
    const double rounded = std::round(value / step) * step;
    return std::isfinite(rounded) ? rounded : value;
}

long LongRound(double value) {
    constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
    constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
    if (std::isnan(value))
        return 0;
    const double limited = std::clamp(value, kLowest, kHighest);
    const auto whole = static_cast<std::int32_t>(limited);
    const double rest = limited - whole; // exact, so halves are told exactly
    return whole + (rest >= 0.5 ? 1 : 0) - (rest <= -0.5 ? 1 : 0);
}

double RoundedByLong(double value, double scale) {
    constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
    const double scaled = value * scale;
    if (!IsPresent(value) || !(std::fabs(scaled) <= kHighest))
        return value;
    return static_cast<double>(LongRound(scaled)) / scale;
}
