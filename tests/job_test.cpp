// The import of a field controller's job, whatever engine answers its queries.

#include "tests/support/Convert.h"
#include "tests/support/Files.h"
#include "tests/support/JobDatabase.h"
#include "tests/support/JobImport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace convfile::test {
namespace {

using access::Table;
using access::Type;
using access::Version;
using testing::ElementsAre;

/// Gives a column that text in all rows.
void SetText(std::vector<Table>& tables, const char* table, const char* column,
             const std::string& text) {
    Table& changed = TableNamed(tables, table);
    const auto found = std::ranges::find(changed.columns, column, &access::Column::name);
    ASSERT_NE(found, changed.columns.end()) << column;
    found->type = Type::Text;
    for (access::Row& row : changed.rows)
        row.values[static_cast<std::size_t>(found - changed.columns.begin())] = text;
}

TEST(JobImport, GivesTheReferenceFieldBooks) {
    GoldenFiles(); // paths from here on begin in their folder
    const struct {
        std::string path;
        std::vector<Table> tables;
    } kJobs[] = {{"tlsv/day-jet4", RealisticJob()}, {"tlsv/empty", EmptyJob()}};
    for (const auto& job : kJobs) {
        views::Conversion result;
        ImportJob(job.tables, job.path + ".tlsv", result);
        EXPECT_EQ(JsonOf(result), ReadBytes(job.path + ".json"));
    }
}

TEST(JobImport, PhotosOfAFileWithoutAFolderLieBesideIt) {
    GoldenFiles();
    std::filesystem::current_path("tlsv");
    views::Conversion job;
    ImportJob(RealisticJob(), "day-jet4.tlsv", job);
    EXPECT_EQ(
        job.fieldBook.Jobs().at(0)->stations.at(0)->points.at(0)->GetExtras().photos.at(0).path,
        "day-jet4\\p1.jpg");
}

TEST(JobImport, TellsTheHostInOrder) {
    views::Conversion job;
    ImportJob(RealisticJob(), job);
    EXPECT_THAT(job.notifications, ElementsAre(memory::Notification{"point library parent", 1, 3},
                                               memory::Notification{"orientation points", 1, 1},
                                               memory::Notification{"drawing", 1, 1}));
    views::Conversion empty;
    ImportJob(EmptyJob(), empty);
    EXPECT_THAT(empty.notifications, ElementsAre(memory::Notification{"drawing", 1, 1}));
}

TEST(JobImport, AStationThatIsDeclinedLeavesNoKey) {
    views::Conversion job;
    job.fieldBook.DeclineFrom(memory::Adder::Station, 1);
    ImportJob(RealisticJob(), job);
    ASSERT_EQ(job.fieldBook.Jobs().at(0)->stations.size(), 1U);
    EXPECT_EQ(job.fieldBook.Jobs()[0]->stations[0]->points.size(), 5U);
}

TEST(JobImport, KeepsTheNewJobWhereTheDatabaseDoesNotOpen) {
    const TempFolder folder;
    views::Conversion job;
    ConvertAs("tlsv", folder.Write("job.tlsv", "no database"), job);
    EXPECT_FALSE(job.converted);
    ASSERT_EQ(job.fieldBook.Jobs().size(), 1U);
    EXPECT_EQ(job.fieldBook.Jobs()[0]->Name(), "job");
    ExpectDriverMessage(job.messages);
}

TEST(JobImport, DecimalCommasAndDatesBefore1970) {
    std::vector<Table> tables = RealisticJob();
    TableNamed(tables, "tblCrdObsSession").rows[0].values[2] = std::int64_t{-1};
    SetText(tables, "tblSoPoints", "C1", " 12,5");
    views::Conversion job;
    ImportJob(tables, job);
    EXPECT_EQ(job.fieldBook.Jobs().at(0)->Date(), "31/12/1969");
    EXPECT_EQ(job.fieldBook.Jobs()[0]->stations.at(0)->GetExtras().coordinates.y, 12.5);
}

TEST(JobImport, HasNoNegativeZero) {
    std::vector<Table> tables = RealisticJob();
    for (const auto& [table, column] : {std::pair{"tblSoPoints", "C1"},
                                        {"tblSoPoints", "C3"},
                                        {"tblStations", "C2"},
                                        {"tblTsOccups", "InstrHeight"},
                                        {"tblTsShots", "TargetAntHeight"},
                                        {"tblTsShots", "HAngle"}})
        SetText(tables, table, column, "-0.00");
    views::Conversion job;
    ImportJob(tables, job);
    const std::string book = JsonOf(job);
    EXPECT_THAT(book, testing::HasSubstr(R"("target_height": 0)"));
    for (const char* const zero : {" -0,", " -0\n"})
        EXPECT_THAT(book, Not(testing::HasSubstr(zero)));
}

TEST(JobImport, DatesAreThoseOfTheCalendar) {
    const struct {
        std::int64_t seconds;
        const char* date;
    } kDates[] = {{0, "1/1/1970"},           {951782400, "29/2/2000"},
                  {951868800, "1/3/2000"},   {1719791999, "30/6/2024"},
                  {1719792000, "1/7/2024"},  {1733011200, "1/12/2024"},
                  {2147483647, "19/1/2038"}, {-2147483648LL, "13/12/1901"}};
    for (const auto& date : kDates) {
        std::vector<Table> tables = EmptyJob();
        TableNamed(tables, "tblCrdObsSession").rows = {{{std::int64_t{1}, "x", date.seconds}}};
        views::Conversion job;
        ImportJob(tables, job);
        EXPECT_EQ(job.fieldBook.Jobs().at(0)->Date(), date.date);
    }
}

TEST(JobImport, NamesKeepTheirQuotes) {
    std::vector<Table> tables = RealisticJob();
    SetText(tables, "tblSoPoints", "Name", "l'\"a\"; --");
    views::Conversion job;
    ImportJob(tables, job);
    const auto& station = *job.fieldBook.Jobs().at(0)->stations.at(0);
    EXPECT_EQ(station.GetNome(), "l'\"a\"; --");
    EXPECT_EQ(station.points.at(0)->GetNome(), "l'\"a\"; --");
}

/// Keys that the controller drew at random: half of them are negative.
TEST(JobImport, KeysMayBeNegative) {
    std::vector<Table> tables = RealisticJob();
    for (Table& table : tables) {
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            const std::string& name = table.columns[i].name;
            if (!name.starts_with("key") && !name.starts_with("fkey"))
                continue;
            for (access::Row& row : table.rows) {
                if (auto* const key = std::get_if<std::int64_t>(&row.values[i]))
                    *key -= 500; // the order stays
            }
        }
    }
    views::Conversion plain;
    views::Conversion negative;
    ImportJob(RealisticJob(), plain);
    ImportJob(tables, negative);
    EXPECT_EQ(PointNames(negative.fieldBook), PointNames(plain.fieldBook));
    EXPECT_EQ(negative.fieldBook.Jobs().at(0)->stations.at(0)->GetNome(), "S100");
}

/// Each bit of the two masks counts.
TEST(JobImport, FlagsTellReferencesAndOffsets) {
    const auto marked = [](std::int64_t reference, std::int64_t offset) {
        std::vector<Table> tables = RealisticJob();
        Table& shots = TableNamed(tables, "tblTsShots");
        std::erase_if(shots.rows, [](const access::Row& row) {
            const auto key = std::get<std::int64_t>(row.values[0]);
            return key != 9 && key != 10;
        });
        shots.rows.at(0).values[7] = reference;
        shots.rows.at(1).values[7] = offset;
        views::Conversion job;
        ImportJob(tables, job);
        return job.fieldBook.Jobs().at(0)->stations.at(1)->points.at(0)->GetMarks().test(
            static_cast<std::size_t>(memory::Mark::NC));
    };
    EXPECT_TRUE(marked(0x13, 0x1043));
    EXPECT_TRUE(marked(0x13 | 0x2C, 0x1043 | 0x3C));
    for (const std::int64_t bit : {0x01, 0x02, 0x10, 0x40, 0x1000})
        EXPECT_FALSE(marked(0x13 ^ bit, 0x1043)) << bit;
    for (const std::int64_t bit : {0x01, 0x02, 0x40, 0x1000})
        EXPECT_FALSE(marked(0x13, 0x1043 ^ bit)) << bit;
}

/// A text is no number, whatever it says: the query fails, which is one without rows.
TEST(JobImport, ATextKeyFindsNothing) {
    std::vector<Table> tables = RealisticJob();
    Table& points = TableNamed(tables, "tblSoPoints");
    points.columns[1].type = Type::Text; // by which the shots' targets are looked for
    for (access::Row& row : points.rows)
        row.values[1] = std::to_string(std::get<std::int64_t>(row.values[1]));
    views::Conversion job;
    ImportJob(tables, job);
    EXPECT_TRUE(job.converted);
    const auto& observations = job.fieldBook.Jobs().at(0)->stations.at(0)->points;
    ASSERT_EQ(observations.size(), 5U);
    EXPECT_EQ(observations[0]->GetNome(), "P1"); // from tblStations
    EXPECT_EQ(observations[1]->GetNome(), "");
}

/// The reference files of the format are what the writer writes.
TEST(JobImport, ReferenceFilesAreReproducible) {
    const struct {
        const char* name;
        std::string bytes;
    } kFiles[] = {
        {"tlsv/day-jet4.tlsv", access::Write(Version::Jet4, RealisticJob())},
        {"tlsv/day-ace14-compressed.tlsv",
         access::Write(Version::Ace14, RealisticJob(),
                       {.compressedText = true, .mapsOfPages = true})},
        {"tlsv/day-jet3.tlsv",
         access::Write(Version::Jet3, RealisticJob(), {.longestInline = 0, .mapsOfPages = true})},
        {"tlsv/empty.tlsv", access::Write(Version::Ace12, EmptyJob())},
    };
    for (const auto& file : kFiles) {
        const std::filesystem::path path =
            std::filesystem::path(CONVFILE_GOLDEN_FOLDER) / file.name;
        EXPECT_EQ(ReadBytes(path) == file.bytes, true) << file.name;
        if (std::getenv("CONVFILE_UPDATE_GOLDEN"))
            WriteBytes(path, file.bytes);
    }
}

} // namespace
} // namespace convfile::test
