// Do two builds of the program give the same field books?
//
//   same_books vary FORMAT OUT COUNT
//       writes COUNT variants of each reference file of a format into a folder: the same records
//       with other digits
//   same_books compare A B
//       compares what two programs printed. A point's angles and distance may differ by no more
//       than 1e-12 of their size (two C libraries differ in the last places of atan, acos, sin and
//       cos); everything else not at all. For the formats that compute these and do not round them

#include "tests/support/Files.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iostream>
#include <random>
#include <string_view>

namespace {

using namespace convfile::test;

/// Every third digit or so becomes another one; what else is in the file stays.
std::string Varied(std::string bytes, std::mt19937& random) {
    for (char& c : bytes) {
        if (c >= '0' && c <= '9' && random() % 3 == 0)
            c = static_cast<char>('0' + random() % 10);
    }
    return bytes;
}

int Vary(const std::string& format, const std::filesystem::path& folder, int count) {
    const std::filesystem::path start = std::filesystem::absolute(folder);
    std::mt19937 random(20260101);
    int written = 0;
    for (const Golden& golden : GoldenFiles()) {
        const std::string bytes = ReadBytes(golden.file);
        for (int i = 0; i < count && golden.format == format; ++i, ++written) {
            const std::string name = golden.file.stem().string() + "-" + std::to_string(i) +
                                     golden.file.extension().string();
            WriteBytes(start / name, Varied(bytes, random));
        }
    }
    return written > 0 ? 0 : 1;
}

/// What may be computed, as it is printed.
constexpr std::string_view kComputed[] = {
    "\"slope_distance\":", "\"zenith_angle\":", "\"horizontal_angle\":"};

constexpr std::string_view kOfNumbers = "+-.0123456789eE";

/// The computed number around a place of a text, which moves behind it; none where it is another
/// one.
double NumberAt(std::string_view text, std::size_t& place) {
    std::size_t begin = place;
    while (begin > 0 && kOfNumbers.find(text[begin - 1]) != std::string_view::npos)
        --begin;
    double number = std::nan("");
    if (std::ranges::none_of(kComputed, [&](std::string_view name) {
            return text.substr(0, begin).ends_with(name);
        }))
        return number;
    place = std::min(text.size(), text.find_first_not_of(kOfNumbers, begin));
    const auto [end, error] = std::from_chars(text.data() + begin, text.data() + place, number);
    return error == std::errc() && end == text.data() + place ? number : std::nan("");
}

int Compare(const std::string& first, const std::string& second) {
    constexpr double kTolerance = 1e-12;
    int differing = 0;
    double greatest = 0;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < first.size() || j < second.size()) {
        if (i < first.size() && j < second.size() && first[i] == second[j]) {
            ++i;
            ++j;
            continue;
        }
        const std::size_t place = i;
        const double a = NumberAt(first, i);
        const double b = NumberAt(second, j);
        const double difference = std::abs(a - b) / std::max(std::abs(a), std::abs(b));
        if (!(difference <= kTolerance)) {
            const std::size_t line = first.rfind('\n', place) + 1;
            std::cerr << "differ at: " << first.substr(line, 60) << " ... "
                      << first.substr(std::max(line, place < 40 ? 0 : place - 40), 80) << '\n';
            return 1;
        }
        ++differing;
        greatest = std::max(greatest, difference);
    }
    std::cout << first.size() << " bytes alike";
    if (differing > 0)
        std::cout << " but for " << differing << " numbers, by " << greatest << " at most";
    std::cout << '\n';
    return first.empty() ? 1 : 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() == 4 && arguments[0] == "vary")
        return Vary(arguments[1], arguments[2], std::stoi(arguments[3]));
    if (arguments.size() == 3 && arguments[0] == "compare")
        return Compare(ReadBytes(arguments[1]), ReadBytes(arguments[2]));
    std::cerr << "Usage: same_books vary FORMAT OUT COUNT | compare A B\n";
    return 2;
}
