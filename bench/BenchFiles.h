#pragma once

#include "app/Choice.h"
#include "app/FileConversion.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include <sys/resource.h>
#include <unistd.h>

namespace convfile::bench {

/// A file that is made for the measurement and removed after it.
class BenchFile {
public:
    explicit BenchFile(const std::string& name)
        : path_((std::filesystem::temp_directory_path() /
                 ("convfile-bench-" + std::to_string(getpid()) + "-" + name))
                    .string()) {}
    BenchFile(const BenchFile&) = delete;
    BenchFile& operator=(const BenchFile&) = delete;
    ~BenchFile() { std::filesystem::remove(path_); }

    const std::string& Path() const { return path_; }
    std::ofstream Create() const { return std::ofstream(path_, std::ios::binary); }

private:
    std::string path_;
};

/// Converts a file as the program does.
inline void Convert(const std::string& format, const std::string& path,
                    views::Conversion& conversion) {
    app::FormatChoice choice;
    choice.name = format;
    app::Convert(app::ChooseRoute(choice, path), path, conversion);
}

/// What a process of its own took.
struct Cost {
    double seconds = 0;   ///< CPU time, user and system, from start to end
    double peakBytes = 0; ///< peak memory
};

/// Starts this program anew with these arguments; its main() does the work and calls PrintCost().
inline Cost RunAnew(const std::string& arguments) {
    const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
    std::FILE* const pipe = popen((program + " " + arguments).c_str(), "r");
    Cost cost;
    if (!pipe || std::fscanf(pipe, "%lf %lf", &cost.seconds, &cost.peakBytes) != 2)
        cost = {};
    if (pipe)
        pclose(pipe);
    return cost;
}

/// Prints what this process took so far, for RunAnew() to read.
inline void PrintCost() {
    double kilobytes = 0;
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:"))
            kilobytes = std::stod(line.substr(6));
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) * 1e-6;
    };
    std::printf("%.6f %.0f\n", seconds(usage.ru_utime) + seconds(usage.ru_stime), kilobytes * 1024);
}

} // namespace convfile::bench
