// The import of job databases, sizes doubling: as they come, and with what makes one record meet
// all others (keys that many rows share, keys that are statements). Time may grow with the size
// alone; an import that a database's keys would make grow faster ends, and is counted as "ended".

#include "bench/BenchFiles.h"
#include "tests/support/JobDatabase.h"

#include <benchmark/benchmark.h>

namespace {

using namespace convfile;
using namespace convfile::bench;
using test::TableNamed;
using test::access::Row;
using test::access::Table;
using test::access::Type;
using test::access::Value;

using Tables = std::vector<Table>;

Value Text(const std::string& text) {
    return text;
}

/// A job of one set-up with `count` shots, each at a point of its own.
Tables PlainJob(std::int64_t count, std::int64_t firstKey = 1) {
    Tables tables = test::EmptyJob();
    TableNamed(tables, "tblTsOccups").rows = {{{45552.375, 1.5, "", std::int64_t{21}, firstKey}}};
    TableNamed(tables, "tblCodeDefs").rows = {{{std::int64_t{1}, "SPIGOLO"}}};
    for (std::int64_t i = 0; i < count; ++i) {
        const std::int64_t key = firstKey + i;
        TableNamed(tables, "tblTsShots")
            .rows.push_back(
                {{key, std::int64_t{21}, key, 45.0, 90.0, 25.5, 1.8, std::int64_t{0}, key}});
        TableNamed(tables, "tblSoPoints")
            .rows.push_back({{key, key, Text("P" + std::to_string(i)), 5000.0, 1000.0, 100.0,
                              std::int64_t{0}, std::int64_t{0}}});
        TableNamed(tables, "tblCrdRawMeas").rows.push_back({{key, std::int64_t{0}}});
        TableNamed(tables, "tblCodesToPts").rows.push_back({{key, key, std::int64_t{1}}});
    }
    return tables;
}

Tables NegativeKeys(std::int64_t count) {
    return PlainJob(count, -1'000'000);
}

Tables PositiveKeys(std::int64_t count) {
    return PlainJob(count);
}

/// As many set-ups as shots, all under one key.
Tables SetUpsOfOneKey(std::int64_t count) {
    Tables tables = PlainJob(count);
    Table& setUps = TableNamed(tables, "tblTsOccups");
    setUps.primaryKey = -1;
    setUps.rows.resize(static_cast<std::size_t>(count), setUps.rows[0]);
    return tables;
}

/// As many codes as shots, all of one target.
Tables CodesOfOneTarget(std::int64_t count, std::int64_t definition) {
    Tables tables = PlainJob(count);
    for (Row& row : TableNamed(tables, "tblTsShots").rows)
        row.values[2] = std::int64_t{1};
    for (Row& row : TableNamed(tables, "tblCodesToPts").rows) {
        row.values[1] = std::int64_t{1};
        row.values[2] = definition;
    }
    return tables;
}

Tables KnownCodes(std::int64_t count) {
    return CodesOfOneTarget(count, 1);
}

Tables UnknownCodes(std::int64_t count) {
    return CodesOfOneTarget(count, 7);
}

/// As many photos as shots, all of one shot key.
Tables PhotosOfOneKey(std::int64_t count) {
    Tables tables = PlainJob(count);
    Table& shots = TableNamed(tables, "tblTsShots");
    shots.primaryKey = -1;
    for (Row& row : shots.rows)
        row.values[0] = std::int64_t{1};
    for (std::int64_t i = 0; i < count; ++i)
        TableNamed(tables, "tblCrdImageData")
            .rows.push_back({{i, std::int64_t{1}, Text("p.jpg"), std::int64_t{0}}});
    return tables;
}

/// As many points of one target as shots.
Tables PointsOfOneTarget(std::int64_t count) {
    Tables tables = PlainJob(count);
    for (Row& row : TableNamed(tables, "tblTsShots").rows)
        row.values[2] = std::int64_t{1};
    for (Row& row : TableNamed(tables, "tblSoPoints").rows)
        row.values[1] = std::int64_t{1};
    return tables;
}

/// Keys that make their statements look through a whole table.
Tables KeysThatAreConditions(std::int64_t count) {
    Tables tables = PlainJob(count);
    Table& shots = TableNamed(tables, "tblTsShots");
    shots.columns[2].type = Type::Text;
    for (std::size_t i = 0; i < shots.rows.size(); ++i)
        shots.rows[i].values[2] = "0 OR C1=" + std::to_string(i);
    return tables;
}

void ImportJob(benchmark::State& state, Tables (*make)(std::int64_t)) {
    const BenchFile file("job.tlsv");
    file.Create() << test::access::Write(test::access::Version::Jet4, make(state.range(0)));
    bool converted = true;
    for (auto _ : state) {
        views::Conversion conversion;
        Convert("tlsv", file.Path(), conversion);
        converted = conversion.converted;
    }
    state.counters["ended"] = converted ? 0 : 1;
    state.SetComplexityN(state.range(0));
}

void Sizes(benchmark::internal::Benchmark* sizes) {
    sizes->RangeMultiplier(2)->Range(2048, 16384)->Unit(benchmark::kMillisecond);
    sizes->Complexity();
}

BENCHMARK_CAPTURE(ImportJob, PositiveKeys, PositiveKeys)->Apply(Sizes);
BENCHMARK_CAPTURE(ImportJob, NegativeKeys, NegativeKeys)->Apply(Sizes);
BENCHMARK_CAPTURE(ImportJob, SetUpsOfOneKey, SetUpsOfOneKey)->Apply(Sizes);
BENCHMARK_CAPTURE(ImportJob, KnownCodes, KnownCodes)->Apply(Sizes);
BENCHMARK_CAPTURE(ImportJob, UnknownCodes, UnknownCodes)->Apply(Sizes);
BENCHMARK_CAPTURE(ImportJob, PhotosOfOneKey, PhotosOfOneKey)->Apply(Sizes);
BENCHMARK_CAPTURE(ImportJob, PointsOfOneTarget, PointsOfOneTarget)->Apply(Sizes);
BENCHMARK_CAPTURE(ImportJob, KeysThatAreConditions, KeysThatAreConditions)->Apply(Sizes);

} // namespace

BENCHMARK_MAIN();
