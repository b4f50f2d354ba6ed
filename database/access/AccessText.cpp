#include "database/access/AccessText.h"

#include "database/access/AccessPages.h"
#include "routines/CodePage.h"
#include "routines/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace convfile::database {

namespace {

/// In a compressed text a NUL switches between one byte a character (the first 256) and two.
std::string DecodeCompressed(std::string_view bytes) {
    std::string text;
    bool oneByte = true;
    for (std::size_t i = 0; i < bytes.size();) {
        if (bytes[i] == '\0') {
            oneByte = !oneByte;
            ++i;
        } else if (oneByte) {
            text += Windows1252FromUnit(static_cast<unsigned char>(bytes[i++]));
        } else {
            if (i + 1 >= bytes.size())
                break;
            text += Windows1252FromUnit(NumberAt(bytes, i, 2));
            i += 2;
        }
    }
    return text;
}

/// Digits with a point before the last `scale`, without trailing zeros.
std::string WithPoint(std::string digits, int scale, bool negative) {
    const auto decimals = static_cast<std::size_t>(std::max(scale, 0));
    if (digits.size() <= decimals)
        digits.insert(0, decimals + 1 - digits.size(), '0');
    if (decimals > 0) {
        digits.insert(digits.size() - decimals, 1, '.');
        digits.erase(digits.find_last_not_of('0') + 1);
        if (digits.ends_with('.'))
            digits.pop_back();
    }
    return negative && digits != "0" ? "-" + digits : digits;
}

} // namespace

std::string DecodeText(std::string_view bytes, bool jet3) {
    if (jet3)
        return std::string(bytes);
    if (bytes.starts_with(kCompressed))
        return DecodeCompressed(bytes.substr(kCompressed.size()));
    std::string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        text += Windows1252FromUnit(NumberAt(bytes, i, 2));
    return text;
}

std::string TextOfReal(double value, int significantDigits) {
    if (value == 0)
        return "0"; // -0, too
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::general, significantDigits)
                         .ptr;
    std::string text(buffer.data(), end);
    StringToUpper(text);
    return text;
}

std::string TextOfCurrency(long long units) {
    const bool negative = units < 0;
    const auto size =
        negative ? 0 - static_cast<std::uint64_t>(units) : static_cast<std::uint64_t>(units);
    return WithPoint(std::to_string(size), 4, negative);
}

std::string TextOfGuid(std::string_view bytes) {
    constexpr std::size_t kOrder[] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string text = "{";
    for (std::size_t i = 0; i < std::size(kOrder); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[kOrder[i]]);
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text += '-';
        text += kHex[byte >> 4];
        text += kHex[byte & 0xF];
    }
    return text + "}";
}

std::string TextOfNumeric(std::string_view bytes, int scale) {
    constexpr std::size_t kWords = 4;
    // The words come highest first, the bytes of each lowest first.
    std::array<std::uint64_t, kWords> words{};
    for (std::size_t i = 0; i < kWords; ++i)
        words[i] = NumberAt(bytes, 1 + 4 * i, 4);
    std::string digits;
    while (std::ranges::any_of(words, [](std::uint64_t word) { return word != 0; })) {
        std::uint64_t rest = 0;
        for (std::uint64_t& word : words) {
            const std::uint64_t dividend = (rest << 32) | word;
            word = dividend / 10;
            rest = dividend % 10;
        }
        digits.insert(digits.begin(), static_cast<char>('0' + rest));
    }
    return WithPoint(digits, scale, bytes[0] != 0);
}

} // namespace convfile::database
