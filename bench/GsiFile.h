#pragma once

#include "bench/BenchFiles.h"

#include <cstdio>
#include <map>
#include <memory>

namespace convfile::bench {

inline constexpr long kPointsPerStation = 50;

/// 123 bytes a point: its number, both angles, slope distance and target height.
inline void WriteGsi(std::ofstream out, long points) {
    char line[256];
    for (long i = 0; i < points; ++i) {
        if (i % kPointsPerStation == 0) {
            std::snprintf(line, sizeof line,
                          "*11%04ld+%016ld 84..16+0000000010000000 85..16+0000000010000000 "
                          "88..16+0000000000015%03ld\r\n",
                          i % 10000, 900000000 + i / kPointsPerStation, i % 1000);
            out << line;
        }
        std::snprintf(
            line, sizeof line,
            "*11%04ld+%016ld 21.322+%016ld 22.322+%016ld 31..06+%016ld 87..16+%016ld \r\n",
            i % 10000, i + 1, (i * 7919L) % 40000000, 9000000 + (i * 104729L) % 2000000,
            100000 + (i * 31L) % 900000, 15000 + i % 5000);
        out << line;
    }
}

/// The path of a file of so many points; it lasts as long as the program.
inline const std::string& GsiFile(long points) {
    static std::map<long, std::unique_ptr<BenchFile>> files;
    auto& file = files[points];
    if (!file) {
        file = std::make_unique<BenchFile>(std::to_string(points) + ".gsi");
        WriteGsi(file->Create(), points);
    }
    return file->Path();
}

} // namespace convfile::bench
