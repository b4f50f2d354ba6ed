// Writes variants of the reference files of a format into a folder, the same ones on every system:
// the same records with other digits. For scripts/compare-windows.
//
//   vary_files FORMAT OUT COUNT     COUNT variants of each file

#include "tests/support/Files.h"

#include <iostream>
#include <random>
#include <string>
#include <vector>

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

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() == 3)
        return Vary(arguments[0], arguments[1], std::stoi(arguments[2]));
    std::cerr << "Usage: vary_files FORMAT OUT COUNT\n";
    return 2;
}
