// How fast a large GSI-16 file is converted into the host in memory, beside the plainest loop in C
// over the same file: fgets, strstr for the words, strtod on their data.
//
// The size of a file is its number of points; there is a station for every 50 of them. The time is
// the CPU time of a process that does nothing else, its start included.

#include "bench/GsiFile.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

using namespace convfile;
using namespace convfile::bench;

struct PlainPoint {
    double values[6];
    char name[24];
};

/// The plainest loop in C.
void ReadPlainly(const char* path) {
    PlainPoint* points = nullptr;
    std::size_t count = 0;
    std::size_t room = 0;
    std::FILE* const file = std::fopen(path, "rt");
    char line[255];
    while (std::fgets(line, sizeof line, file)) {
        if (count == room) {
            room = room == 0 ? 1024 : 2 * room;
            points = static_cast<PlainPoint*>(std::realloc(points, room * sizeof *points));
        }
        PlainPoint& point = points[count++];
        const char* const keys[] = {" 21.", " 22.", " 31.", " 32.", " 33.", " 87."};
        for (std::size_t i = 0; i < 6; ++i) {
            const char* const word = std::strstr(line, keys[i]);
            point.values[i] = word ? std::strtod(word + 8, nullptr) : 0;
        }
        benchmark::DoNotOptimize(std::strstr(line, " 71."));
        benchmark::DoNotOptimize(std::strstr(line, " 88."));
        std::memcpy(point.name, line + 8, 16);
        point.name[16] = '\0';
    }
    std::fclose(file);
    benchmark::DoNotOptimize(points);
    std::free(points);
}

/// Each iteration is a process of its own, so that every size finds memory as fresh as the other.
void InItsOwnProcess(benchmark::State& state, const std::string& work) {
    const std::string& path = GsiFile(state.range(0));
    const std::string command = work + " " + path;
    const Cost start = RunAnew(work + " /dev/null");
    double peak = 0;
    for (auto _ : state) {
        const Cost cost = RunAnew(command);
        state.SetIterationTime(cost.seconds);
        peak = cost.peakBytes;
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["peak_bytes_per_point"] =
        (peak - start.peakBytes) / static_cast<double>(state.range(0));
}

void Register(const char* name, const std::string& work) {
    benchmark::RegisterBenchmark(name, InItsOwnProcess, work)
        ->Arg(100000)
        ->Arg(1000000)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv) {
    const std::string work = argc == 3 ? argv[1] : "";
    if (work == "convert") {
        views::Conversion conversion;
        Convert("gsi", argv[2], conversion);
        PrintCost();
        return conversion.converted ? 0 : 1;
    }
    if (work == "plain") {
        ReadPlainly(argv[2]);
        PrintCost();
        return 0;
    }
    Register("Convert", "convert");
    Register("PlainLoop", "plain");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
