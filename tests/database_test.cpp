// The import of job databases off Windows: damaged, empty, odd and hostile ones; and what another
// reader makes of the files that the tests write.

#include "database/JobTables.h"
#include "tests/support/Convert.h"
#include "tests/support/Files.h"
#include "tests/support/JobDatabase.h"
#include "tests/support/JobImport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace convfile::test {
namespace {

using access::Table;
using access::Type;
using access::Version;

/// Refused before anything is written, with the reason and the message of the missing driver.
void ExpectRefused(const std::vector<Table>& tables, const std::string& problem) {
    views::Conversion job;
    ImportJob(tables, job);
    EXPECT_FALSE(job.converted) << problem;
    EXPECT_EQ(job.problem, problem);
    ASSERT_EQ(job.fieldBook.Jobs().size(), 1U);
    EXPECT_TRUE(job.fieldBook.Jobs()[0]->stations.empty());
    ExpectDriverMessage(job.messages);
}

/// One flipped bit in a name does it.
TEST(JobDatabase, IsRefusedWithoutAColumnThatIsAlwaysRead) {
    const std::vector<Table> good = RealisticJob();
    std::size_t refused = 0;
    for (std::size_t t = 0; t < good.size(); ++t) {
        for (std::size_t c = 0; c < good[t].columns.size(); ++c) {
            const std::string name = good[t].columns[c].name;
            const auto& read = database::JobTableNamed(good[t].name)->columns;
            if (std::ranges::find(read, name) == read.end())
                continue;
            std::vector<Table> tables = good;
            tables[t].columns[c].name[1] ^= 1;
            ExpectRefused(tables, "table " + good[t].name + ": it has no column " + name);
            tables[t].columns[c].name = name;
            for (char& letter : tables[t].columns[c].name) // the letter case is free
                letter = static_cast<char>(letter >= 'a' && letter <= 'z' ? letter - 32 : letter);
            views::Conversion job;
            ImportJob(tables, job);
            EXPECT_TRUE(job.converted) << name;
            ++refused;
        }
    }
    EXPECT_EQ(refused, 35U);
    std::vector<Table> tables = EmptyJob();
    Table& occupations = TableNamed(tables, "tblTsOccups");
    occupations.columns = {{"a", Type::Long}, {"b", Type::Long}};
    ExpectRefused(tables, "table tblTsOccups: it has too few columns");
    occupations.columns.push_back({"c", Type::Long});
    views::Conversion job;
    ImportJob(tables, job);
    EXPECT_TRUE(job.converted);
}

/// A table that is not listed has no rows; nor has one that no job needs, and that cannot be read.
TEST(JobDatabase, MayLackTables) {
    const std::vector<Table> good = RealisticJob();
    for (std::size_t t = 0; t < good.size(); ++t) {
        std::vector<Table> tables = good;
        tables.erase(tables.begin() + static_cast<std::ptrdiff_t>(t));
        views::Conversion job;
        ImportJob(tables, job);
        EXPECT_TRUE(job.converted) << good[t].name;
        EXPECT_EQ(job.fieldBook.Jobs().at(0)->stations.size(),
                  good[t].name == "tblTsOccups" ? 0 : 3);
    }
}

/// The key of `count` set-ups, which all see the same shots.
std::vector<Table> SharedSetUps(std::size_t count) {
    std::vector<Table> tables = RealisticJob();
    Table& setUps = TableNamed(tables, "tblTsOccups");
    setUps.primaryKey = -1;
    setUps.rows.resize(1);
    setUps.rows.resize(count, setUps.rows[0]);
    return tables;
}

TEST(JobDatabase, MayShareItsKeysWithinReason) {
    views::Conversion few;
    ImportJob(SharedSetUps(300), few); // of 5 shots each, and what belongs to them
    EXPECT_TRUE(few.converted);
    ASSERT_EQ(few.fieldBook.Jobs().at(0)->stations.size(), 300U);
    for (const auto& station : few.fieldBook.Jobs()[0]->stations)
        EXPECT_EQ(station->points.size(), 5U);
    views::Conversion many;
    std::vector<Table> tables = SharedSetUps(3000);
    Table& shots = TableNamed(tables, "tblTsShots");
    shots.primaryKey = -1;
    shots.rows.resize(3000, shots.rows[0]);
    ImportJob(tables, many);
    EXPECT_FALSE(many.converted);
    EXPECT_EQ(many.problem, "too many of its rows share their keys");
    EXPECT_EQ(many.fieldBook.Jobs().at(0)->stations.size(), 3000U) << "what was written stays";
    EXPECT_TRUE(many.messages.empty());
}

/// Keys that are conditions, each of which looks through all points.
TEST(JobDatabase, IsNotSearchedWithoutEnd) {
    std::vector<Table> tables = RealisticJob();
    Table& points = TableNamed(tables, "tblSoPoints");
    points.primaryKey = -1;
    points.rows.resize(3000, points.rows[1]);
    Table& shots = TableNamed(tables, "tblTsShots");
    shots.columns[2].type = Type::Text;
    for (access::Row& row : shots.rows)
        row.values[2] = std::string();
    shots.primaryKey = -1;
    shots.rows.resize(3000, shots.rows[0]);
    for (std::size_t i = 0; i < shots.rows.size(); ++i)
        shots.rows[i].values[2] = "0 OR C1=-" + std::to_string(i + 1);
    views::Conversion job;
    ImportJob(tables, job);
    EXPECT_FALSE(job.converted);
    EXPECT_EQ(job.problem, "its keys ask for more work than its size explains");
}

TEST(JobDatabase, IsRefusedWhereKeysAreWrong) {
    std::vector<Table> tables = RealisticJob();
    Table& shots = TableNamed(tables, "tblTsShots");
    shots.rows[3].values[0] = shots.rows[4].values[0];
    ExpectRefused(tables, "table tblTsShots: two rows have the same key");
    shots.rows[3].values[0] = std::monostate();
    ExpectRefused(tables, "table tblTsShots: a row lacks its key");
    // In a table that is none of a job's it does not matter: that one is not there.
    tables = RealisticJob();
    tables.insert(tables.begin(), {.name = "Other",
                                   .columns = {{"k", Type::Long}},
                                   .rows = {{{std::int64_t{1}}}, {{std::int64_t{1}}}},
                                   .primaryKey = 0});
    views::Conversion job;
    ImportJob(tables, job);
    EXPECT_TRUE(job.converted);
    views::Conversion whole;
    ImportJob(RealisticJob(), whole);
    EXPECT_EQ(PointNames(job.fieldBook), PointNames(whole.fieldBook));
}

/// Every so many bytes of the definitions changed: a job or none, never a crash.
TEST(JobDatabase, SurvivesDamage) {
    const TempFolder folder;
    const std::string good = access::Write(Version::Ace14, RealisticJob());
    constexpr std::size_t kPage = 4096;
    for (std::size_t i = 2 * kPage; i < 8 * kPage; i += 211) {
        std::string bytes = good;
        bytes[i] = static_cast<char>(bytes[i] ^ 0xFF);
        views::Conversion damaged;
        ConvertAs("tlsv", folder.Write("job.tlsv", bytes), damaged);
    }
}

/// What another reader makes of the writer's files: every table, and the rows of some.
TEST(AccessWriter, AnotherReaderReadsItsFiles) {
    if (std::system("mdb-export --version >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "mdbtools is not installed";
    const TempFolder folder;
    const auto output = [&](const std::string& command) {
        const std::string path = folder.Path("output");
        EXPECT_EQ(std::system((command + " >" + path + " 2>&1").c_str()), 0) << command;
        return ReadBytes(path);
    };
    std::vector<Table> tables = RealisticJob();
    Table wide{.name = "Wide", .columns = {}, .rows = {{}}, .primaryKey = -1};
    for (int i = 0; i < 180; ++i) {
        wide.columns.push_back({"aRatherLongName" + std::to_string(i), Type::Long});
        wide.rows[0].values.emplace_back(std::int64_t{i});
    }
    tables.push_back(wide);
    for (const Version version : {Version::Jet3, Version::Jet4, Version::Ace12, Version::Ace14}) {
        for (const bool other : {false, true}) {
            const std::string file = folder.Write(
                "job.mdb",
                access::Write(version, tables, {.compressedText = other, .mapsOfPages = other}));
            EXPECT_EQ(
                output("mdb-tables -1 " + file),
                "tblCrdObsSession\ntblObsEquipment\ntblTsOccups\ntblCodeDefs\ntblCodesToPts\n"
                "tblSoPoints\ntblTsShots\ntblCrdRawMeas\ntblStations\ntblCrdImageData\nWide\n");
            EXPECT_EQ(output("mdb-export -H " + file + " tblStations"),
                      "901,201,\"P1\",5001.5,1001.25,100.1,0,\"Nota: \u00E8 bagnato\"\n"
                      "904,204,\"P4\",5004,1004,100.4,0,\"" +
                          std::string(5000, 'n') +
                          "\"\n"
                          "951,301,\"T1 \u00E8\",5051,1051,105.1,16,\"bersaglio & mira\"\n");
            EXPECT_THAT(output("mdb-export -H " + file + " tblSoPoints"),
                        testing::HasSubstr("\n202,902,\"P2 perch\u00E9\",5002,1002,-0.5,2,1\n"));
            EXPECT_THAT(output("mdb-export -H " + file + " Wide"), testing::EndsWith(",178,179\n"));
        }
    }
}

} // namespace
} // namespace convfile::test
