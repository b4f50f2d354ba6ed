// Throughput of every format: each of its reference files that is a day's work (day*.*), repeated
// to 100,000 records, converted into the host in memory; beside it a loop that only reads the same
// bytes line by line (record by record where they are binary, in blocks where records have no line
// end). What is compared is CPU time. Databases cannot be repeated.

#include "bench/BenchFiles.h"
#include "entry/FormatTable.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <iterator>
#include <memory>
#include <vector>

namespace {

using namespace convfile;
using namespace convfile::bench;
namespace fs = std::filesystem;

constexpr std::size_t kRecords = 100000;
constexpr std::size_t kBinaryRecord = 43;

constexpr std::size_t kBlock = 255;

struct Subject {
    std::string format;
    std::size_t block; ///< bytes that are read at once; 0: a line
    std::unique_ptr<BenchFile> file;
};

std::string ReadBytes(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// A record is a line, or as many bytes as a binary record has.
std::size_t RecordCount(const std::string& bytes, bool binary) {
    if (binary)
        return bytes.size() / kBinaryRecord;
    return static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n'));
}

/// A day's work without what would end the reading, or shift the records of the next repetition: a
/// closing "END" line, a last line without its end, a last record cut short.
std::string RepeatableDay(const fs::path& golden) {
    std::string day = ReadBytes(golden);
    if (day.find('\0') != std::string_view::npos)
        return day.substr(0, day.size() / kBinaryRecord * kBinaryRecord);
    const std::size_t end = day.find("\nEND\r\n");
    day.resize(end != std::string_view::npos ? end + 1 : day.rfind('\n') + 1);
    return day;
}

/// The lines of a text that are no titles of a report.
std::string WithoutTitles(const std::string& text) {
    std::string rest;
    for (std::size_t begin = 0, end = 0; begin < text.size(); begin = end) {
        end = std::min(text.find('\n', begin), text.size() - 1) + 1;
        const std::string line = text.substr(begin, end - begin);
        if (line.find("|TI ") == std::string_view::npos)
            rest += line;
    }
    return rest;
}

Subject MakeSubject(const std::string& format, const fs::path& golden) {
    const std::string day = RepeatableDay(golden);
    const bool binary = day.find('\0') != std::string_view::npos;
    const std::size_t block = binary ? kBinaryRecord : format == "pcp" ? kBlock : 0;
    Subject subject{format, block, nullptr};
    subject.file = std::make_unique<BenchFile>(golden.filename().string());
    // A report has its titles once: they add up in the job's texts.
    const std::size_t titles = format == "elt" ? day.find("|PI") : 0;
    std::ofstream out = subject.file->Create();
    out << day.substr(0, titles);
    const std::string body = WithoutTitles(day.substr(titles));
    const std::size_t each = std::max<std::size_t>(1, RecordCount(body, binary));
    for (std::size_t i = 0; i < kRecords / each; ++i)
        out << body;
    return subject;
}

void ConvertSubject(benchmark::State& state, const Subject& subject) {
    for (auto _ : state) {
        views::Conversion conversion;
        Convert(subject.format, subject.file->Path(), conversion);
        if (!conversion.converted)
            state.SkipWithError("not converted");
    }
}

/// Pairs of a title and a start of measurements, which takes the titles so far: linear in their
/// number.
void ConvertTitles(benchmark::State& state) {
    std::string report;
    for (int64_t i = 0; i < state.range(0); ++i)
        report += "|TI  Lavoro    CANTIERE|\n|TI  Operatore ROSSI|\nMISURE\n";
    for (auto _ : state) {
        views::Conversion conversion;
        app::Convert({.format = "elt", .trustsFormat = true}, "titles.elt", conversion,
                     ByteSource::Memory(report));
        benchmark::DoNotOptimize(conversion.converted);
    }
}

void ReadSubject(benchmark::State& state, const Subject& subject) {
    for (auto _ : state) {
        std::FILE* const file = std::fopen(subject.file->Path().c_str(), "rb");
        char line[255];
        if (subject.block > 0) {
            while (std::fread(line, 1, subject.block, file) == subject.block)
                benchmark::DoNotOptimize(line[0]);
        } else {
            while (std::fgets(line, sizeof line, file))
                benchmark::DoNotOptimize(line[0]);
        }
        std::fclose(file);
    }
}

} // namespace

int main(int argc, char** argv) {
    std::vector<Subject> subjects;
    for (const Format& format : Formats()) {
        const fs::path folder = fs::path(CONVFILE_GOLDEN_FOLDER) / format.name;
        for (const auto& entry : fs::directory_iterator(folder)) {
            const std::string name = entry.path().filename().string();
            if (name.starts_with("day") && entry.path().extension() != ".json" &&
                format.kind != FormatKind::Database)
                subjects.push_back(MakeSubject(std::string(format.name), entry.path()));
        }
    }
    for (const Subject& subject : subjects) {
        const std::string name =
            subject.format + "/" + fs::path(subject.file->Path()).stem().string();
        benchmark::RegisterBenchmark(("Convert/" + name).c_str(), [&](benchmark::State& state) {
            ConvertSubject(state, subject);
        })->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("Read/" + name).c_str(), [&](benchmark::State& state) {
            ReadSubject(state, subject);
        })->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark("Convert/elt/titles", ConvertTitles)
        ->RangeMultiplier(2)
        ->Range(25000, 100000)
        ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
