// The query layer off Windows, on Access files that the tests make: what both engines give alike,
// which statements are at fault, and which databases are refused.

#include "database/DBDataProviderLcm.h"
#include "database/JobTables.h"
#include "tests/support/AccessWriter.h"
#include "tests/support/Convert.h"
#include "tests/support/Files.h"
#include "tests/support/JobDatabase.h"
#include "tests/support/JobImport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace convfile::test {
namespace {

using access::Table;
using access::Type;
using access::Value;
using access::Version;
using testing::ElementsAre;

class QueryTest : public testing::Test {
protected:
    void Connect(const std::vector<Table>& tables) {
        const std::string path = folder_.Write("test.tlsv", access::Write(Version::Jet4, tables));
        ASSERT_TRUE(database_.Connect(path.c_str(), false));
    }
    std::vector<std::string> Read(const std::string& sql, int fields = 1) {
        std::vector<std::string> rows;
        database_.ReadData(sql, "", fields, &rows);
        return rows;
    }

    TempFolder folder_;
    CDBDataProviderLcm database_;
};

std::vector<Table> OneColumn(Type type, const std::vector<Value>& values) {
    Table table{.name = "T", .columns = {{"a", type}}, .rows = {}, .primaryKey = -1};
    for (const Value& value : values)
        table.rows.push_back({{value}});
    return {table};
}

TEST_F(QueryTest, DatesAndBytesHaveOneForm) {
    Connect(OneColumn(Type::Date, {45552.375, 0.25, -1.25, 45474.0, 45627.99999999, 0.99999999,
                                   -657434.0, -657435.0, 2958465.5, 2958466.0}));
    EXPECT_THAT(Read("SELECT a FROM T"),
                ElementsAre("17/09/2024 09:00:00\t", "06:00:00\t", "29/12/1899 06:00:00\t",
                            "01/07/2024\t", "02/12/2024\t", "31/12/1899\t", "01/01/0100\t", "\t",
                            "31/12/9999 12:00:00\t", "\t"));
    std::string units;
    for (int i = 0; i < 1500; ++i)
        units += std::string("a\0", 2);
    Connect(OneColumn(Type::Ole, {units, std::string("b\0c", 3)}));
    EXPECT_THAT(Read("SELECT a FROM T"), ElementsAre(std::string(1024, 'a') + "\t", "b\t"));
    Connect(OneColumn(Type::Binary, {std::string("a\0\xE8\0\x16\x04x", 7), "", "x"}));
    EXPECT_THAT(Read("SELECT a FROM T"), ElementsAre("a\xE8?\t", "\t", "\t"));
}

/// As the provider has it: the statement is at fault, in whatever order the two stand.
TEST_F(QueryTest, ATextIsNotComparedWithANumber) {
    std::vector<Table> tables = {{.name = "T",
                                  .columns = {{"k", Type::Long},
                                              {"t", Type::Text},
                                              {"m", Type::Memo},
                                              {"d", Type::Date},
                                              {"a = 1", Type::Text}},
                                  .rows = {{{std::int64_t{1}, "1", "1", 1.0, "1"}}},
                                  .primaryKey = 0},
                                 {.name = "U",
                                  .columns = {{"t", Type::Long}, {"u", Type::Text}},
                                  .rows = {{{std::int64_t{1}, "1"}}},
                                  .primaryKey = -1}};
    Connect(tables);
    for (const char* statement :
         {"SELECT k FROM T WHERE t=1", "SELECT k FROM T WHERE t=-1",
          "SELECT k FROM T WHERE t=-1 OR k=1", "SELECT k FROM T WHERE 1=t",
          "SELECT k FROM T WHERE m<2", "SELECT k FROM T WHERE k='1'", "select k from T where t>=.5",
          "SELECT k FROM T WHERE [t] = 1 OR k=1", "SELECT k FROM T WHERE k=1 AND T.t<>1",
          "SELECT k FROM T, U WHERE T.t=U.t", "SELECT k FROM T x WHERE (x.t=1)",
          "SELECT k FROM T WHERE [a = 1]=1", "SELECT k FROM T WHERE k=t",
          "SELECT k FROM T WHERE d='1'"})
        EXPECT_FALSE(database_.CreateQuery(statement, "")) << statement;
    for (const char* statement :
         {"SELECT k FROM T WHERE t='1'", "SELECT k FROM T WHERE k=1", "SELECT k FROM T WHERE d=1",
          "SELECT k FROM T WHERE k=1 AND t='1'", "SELECT k FROM T, U WHERE T.t=U.u AND U.t=1",
          "SELECT k FROM T WHERE t='a=1' OR k=1", "SELECT k FROM T WHERE [a = 1]=m AND k=1",
          "SELECT k FROM T WHERE k=2-1", "SELECT k FROM T WHERE (k)=1",
          "SELECT U.t FROM T, U WHERE T.k=U.t"})
        EXPECT_THAT(Read(statement), ElementsAre("1\t")) << statement;
}

/// Only the number behind the last "=" is bound; whatever else stands for a value is at fault.
TEST_F(QueryTest, NumbersAtTheEndAreBound) {
    Connect(OneColumn(Type::Double, {1.0, -1.0, 1e19, 0.0}));
    EXPECT_THAT(Read("SELECT a FROM T WHERE a=1"), ElementsAre("1\t"));
    EXPECT_THAT(Read("SELECT a FROM T WHERE a=-1"), ElementsAre("-1\t"));
    EXPECT_THAT(Read("SELECT a FROM T WHERE a=-0"), ElementsAre("0\t"));
    EXPECT_THAT(Read("SELECT a FROM T WHERE a=10000000000000000000"), ElementsAre("1E+19\t"));
    EXPECT_THAT(Read("SELECT a FROM T WHERE a=1-2"), ElementsAre("-1\t"));
    EXPECT_THAT(Read("SELECT a FROM T WHERE a>=1 AND a<=2"), ElementsAre("1\t"));
    for (const char* statement : {"SELECT a FROM T WHERE a=?", "SELECT a FROM T WHERE a=? OR a=1",
                                  "SELECT a FROM T --=1", "SELECT a FROM T WHERE a=?2",
                                  "SELECT a FROM T WHERE a=:x", "SELECT a FROM T WHERE a=--1"})
        EXPECT_FALSE(database_.CreateQuery(statement, "")) << statement;
}

TEST_F(QueryTest, NamesMayHoldQuotes) {
    Connect({{.name = "T\"it's",
              .columns = {{"key\"a'", Type::Long}, {"b]", Type::Text}},
              .rows = {{{std::int64_t{7}, "x'\"y"}}},
              .primaryKey = -1}});
    EXPECT_THAT(Read("SELECT * FROM [T\"it's]", 2), ElementsAre("7\tx'\"y\t"));
    EXPECT_THAT(Read("SELECT \"b]\" FROM [T\"it's] WHERE [key\"a']=7"), ElementsAre("x'\"y\t"));
    EXPECT_THAT(Read("SELECT [key\"a'] FROM [T\"it's] WHERE \"b]\"='x''\"y'"), ElementsAre("7\t"));
}

/// Rows come by a key of Longs alone, wherever its index stands among the others.
TEST_F(QueryTest, TheOrderIsThatOfTheSingleLongKey) {
    Table table{.name = "T",
                .columns = {{"a", Type::Integer}, {"k", Type::Long}, {"t", Type::Text}},
                .rows = {{{std::int64_t{1}, std::int64_t{30}, "z"}},
                         {{std::int64_t{3}, std::int64_t{10}, "y"}},
                         {{std::int64_t{2}, std::int64_t{20}, "x"}}},
                .primaryKey = 1};
    table.otherIndexes = {0, 2};
    Connect({table});
    EXPECT_THAT(Read("SELECT k FROM T"), ElementsAre("10\t", "20\t", "30\t"));
    for (const int key : {-1, 0, 2}) { // none, and such as are no Long
        table.primaryKey = key;
        Connect({table});
        EXPECT_THAT(Read("SELECT k FROM T"), ElementsAre("30\t", "10\t", "20\t")) << key;
    }
    table.primaryKey = 1;
    table.secondKey = 0;
    Connect({table});
    EXPECT_THAT(Read("SELECT k FROM T"), ElementsAre("30\t", "10\t", "20\t"));
}

/// Imports a job from a file with these tables, as the program does.
void Import(const std::vector<Table>& tables, app::Conversion& job) {
    const TempFolder folder;
    ConvertAs("tlsv", folder.Write("job.tlsv", access::Write(Version::Jet4, tables)), job);
}

/// Refused before anything is written, with the reason and the message of the missing driver.
void ExpectRefused(const std::vector<Table>& tables, const std::string& problem) {
    app::Conversion job;
    Import(tables, job);
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
            app::Conversion job;
            Import(tables, job);
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
    app::Conversion job;
    Import(tables, job);
    EXPECT_TRUE(job.converted);
}

/// A table that is not listed has no rows; nor has one that no job needs, and that cannot be read.
TEST(JobDatabase, MayLackTables) {
    const std::vector<Table> good = RealisticJob();
    for (std::size_t t = 0; t < good.size(); ++t) {
        std::vector<Table> tables = good;
        tables.erase(tables.begin() + static_cast<std::ptrdiff_t>(t));
        app::Conversion job;
        Import(tables, job);
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
    app::Conversion few;
    Import(SharedSetUps(300), few); // of 5 shots each, and what belongs to them
    EXPECT_TRUE(few.converted);
    ASSERT_EQ(few.fieldBook.Jobs().at(0)->stations.size(), 300U);
    for (const auto& station : few.fieldBook.Jobs()[0]->stations)
        EXPECT_EQ(station->points.size(), 5U);
    app::Conversion many;
    std::vector<Table> tables = SharedSetUps(3000);
    Table& shots = TableNamed(tables, "tblTsShots");
    shots.primaryKey = -1;
    shots.rows.resize(3000, shots.rows[0]);
    Import(tables, many);
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
    app::Conversion job;
    Import(tables, job);
    EXPECT_FALSE(job.converted);
    EXPECT_EQ(job.problem, "its keys ask for more work than its size explains");
}

/// Of the helper's own queries each may work, and find, as much as the last.
TEST_F(QueryTest, ItsQueriesDoNotShareTheirMeasure) {
    std::vector<Value> values(5000, 1.0);
    values.back() = 3.0;
    Connect(OneColumn(Type::Double, values));
    std::vector<std::string> rows;
    const auto readOften = [&] {
        for (int i = 0; i < 30; ++i)
            database_.ReadRows("SELECT a FROM T", "", 1, rows);
    };
    EXPECT_THROW(readOften(), std::runtime_error) << "those of an import do";
    EXPECT_GT(rows.size(), 8 * values.size());
    EXPECT_LT(rows.size(), 8 * values.size() + 20'000);
    for (int i = 0; i < 30; ++i)
        ASSERT_EQ(Read("SELECT a FROM T").size(), values.size());
    for (int i = 0; i < 1000; ++i)
        ASSERT_THAT(Read("SELECT a FROM T WHERE a=3"), ElementsAre("3\t"));
    EXPECT_TRUE(database_.GenerateQuery(L"SELECT a FROM T"));
    EXPECT_EQ(database_.DoGetRows(1), 0);
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
    app::Conversion job;
    Import(tables, job);
    EXPECT_TRUE(job.converted);
    app::Conversion whole;
    Import(RealisticJob(), whole);
    EXPECT_EQ(PointNames(job.fieldBook), PointNames(whole.fieldBook));
}

} // namespace
} // namespace convfile::test
