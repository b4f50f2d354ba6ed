// The query helper off Windows, on Access files that the tests make: what it gives, which
// statements are at fault, which tables are not there.

#include "database/DBDataProviderLcm.h"
#include "routines/CodePage.h"
#include "tests/support/DatabaseText.h"
#include "tests/support/Files.h"
#include "tests/support/JobDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace convfile::test {
namespace {

using access::Table;
using access::Type;
using access::Value;
using access::Version;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class QueryTest : public testing::Test {
protected:
    bool ConnectTo(const std::string& bytes) {
        const std::string path = folder_.Write("test.tlsv", bytes);
        return database_.Connect(path.c_str(), true);
    }
    void Connect(const std::vector<Table>& tables, const access::Style& style = {},
                 Version version = Version::Jet4) {
        ASSERT_TRUE(ConnectTo(access::Write(version, tables, style)));
    }
    std::vector<std::string> Read(const std::string& sql, int fields = 1) {
        std::vector<std::string> rows;
        const bool read = database_.ReadData(sql, "", fields, &rows);
        EXPECT_EQ(read, !rows.empty()) << sql;
        return rows;
    }

    TempFolder folder_;
    CDBDataProviderLcm database_;
};

std::vector<Table> OneColumn(Type type, const std::vector<Value>& values) {
    Table table{.name = "T", .columns = {{"a", type}}, .rows = {}};
    for (const Value& value : values)
        table.rows.push_back({{value}});
    return {table};
}

/// Every database in databases/ answers as it says, however it is stored.
TEST_F(QueryTest, ReferenceDatabasesAnswerAsTheySay) {
    for (const char* const name : {"changed.txt", "order.txt", "statements.txt", "types.txt"}) {
        const DatabaseText text = ReadDatabaseText(name);
        for (const Version version : {Version::Jet3, Version::Jet4, Version::Ace12}) {
            for (const bool other : {false, true}) {
                Connect(text.tables, {.compressedText = other, .mapsOfPages = other}, version);
                for (const Question& question : text.questions) {
                    EXPECT_EQ(database_.CreateQuery(question.sql, ""), !question.isFault)
                        << question.sql;
                    std::vector<std::string> rows = Read(question.sql, question.fields);
                    for (std::string& row : rows)
                        row = Utf8FromWindows1252(row);
                    EXPECT_EQ(rows, question.rows) << question.sql;
                }
            }
        }
    }
}

TEST_F(QueryTest, BytesAreTakenForUtf16) {
    Connect(OneColumn(Type::Text, {std::string("a\0b", 3)}));
    EXPECT_THAT(Read("SELECT a FROM T"), ElementsAre("a\t"));
    std::string units;
    for (int i = 0; i < 1500; ++i)
        units += std::string("a\0", 2);
    Connect(OneColumn(Type::Ole, {units, std::string("b\0c", 3)}));
    EXPECT_THAT(Read("SELECT a FROM T"), ElementsAre(std::string(1024, 'a') + "\t", "b\t"));
    Connect(OneColumn(Type::Binary, {std::string("a\0\xE8\0\x16\x04x", 7), "", "x"}));
    EXPECT_THAT(Read("SELECT a FROM T"), ElementsAre("a\xE8?\t", "\t", "\t"));
}

TEST_F(QueryTest, CutsLongTextsHoweverTheyAreStored) {
    std::string longText;
    for (int i = 0; i < 5000; ++i)
        longText += static_cast<char>('a' + i % 26);
    const std::string cut = longText.substr(0, 1024) + "\t";
    for (const std::size_t size :
         {10U, 900U, 3000U, 5000U}) { // in the row, in one piece, in several
        const Table table{.name = "T",
                          .columns = {{"m", Type::Memo}},
                          .rows = {{{longText.substr(0, size)}}},
                          .primaryKey = -1};
        Connect({table});
        EXPECT_THAT(Read("SELECT m FROM T", 1),
                    ElementsAre(size < 1024 ? longText.substr(0, size) + "\t" : cut));
    }
}

/// In Jet 3 the offsets in a row are single bytes; further bytes say where they pass 256.
TEST_F(QueryTest, ReadsTheNarrowRowsOfJet3) {
    for (const std::size_t first : {0U, 3U, 235U, 240U, 241U, 242U, 250U, 255U, 256U, 500U, 760U}) {
        Table table{.name = "T\u00E8",
                    .columns = {{"a", Type::Text},
                                {"k", Type::Long},
                                {"b", Type::Text},
                                {"c", Type::Text},
                                {"m", Type::Memo}},
                    .rows = {},
                    .primaryKey = 1};
        std::string expected;
        for (std::size_t second = 0; second < 300; ++second) {
            const std::string a(first, 'a');
            const std::string b(second, 'b');
            const std::string memo(second % 100 == 0 ? 1023 : second % 3, 'm');
            table.rows.push_back({{a, static_cast<std::int64_t>(second), b, "\u20AC", memo}});
            expected += a + "\t" + std::to_string(second) + "\t" + b + "\t\x80\t" + memo + "\t\n";
        }
        Connect({table}, {}, Version::Jet3);
        std::string read;
        for (const std::string& row : Read("SELECT * FROM [T\xE8]", 5))
            read += row + "\n";
        EXPECT_EQ(read, expected) << first;
    }
}

/// A definition and rows over several pages, of which some moved.
TEST_F(QueryTest, ReadsWhatNeedsSeveralPages) {
    Table wide{.name = "Wide", .columns = {}, .rows = std::vector<access::Row>(40)};
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < 200; ++i) {
        wide.columns.push_back({"column" + std::to_string(i), Type::Long});
        for (std::size_t row = 0; row < wide.rows.size(); ++row)
            wide.rows[row].values.emplace_back(static_cast<std::int64_t>(row + i));
    }
    for (std::size_t row = 0; row < wide.rows.size(); ++row) {
        wide.rows[row].moved = row % 7 == 0;
        expected.push_back(std::to_string(row) + "\t" + std::to_string(row + 199) + "\t");
    }
    for (const Version version : {Version::Jet3, Version::Jet4, Version::Ace14}) {
        for (const bool other : {false, true}) {
            Connect({wide}, {.mapsOfPages = other}, version);
            EXPECT_EQ(Read("SELECT column0, column199 FROM Wide", 2), expected);
        }
    }
}

/// The status is that of the last field: whether it has a text.
TEST_F(QueryTest, StatusAndRowsAreThoseOfTheLastFetch) {
    Connect(RealisticJob());
    EXPECT_TRUE(database_.GenerateQuery(L"SELECT keySoPoint FROM tblSoPoints WHERE Name='P3'"));
    EXPECT_EQ(database_.DoGetRows(1), 0);
    EXPECT_THAT(database_.Rows(), ElementsAre("203\t"));
    EXPECT_ANY_THROW(database_.DoGetRows(1)) << "no row is left";
    EXPECT_ANY_THROW(database_.DoGetRows(1));
    EXPECT_THAT(database_.Rows(), SizeIs(1));
    ASSERT_TRUE(database_.CreateQuery("SELECT C1, Name FROM tblSoPoints WHERE keySoPoint=", "210"));
    EXPECT_LT(database_.DoGetRows(2), 0);
    ASSERT_TRUE(database_.CreateQuery("SELECT Name, C1 FROM tblSoPoints WHERE keySoPoint=", "210"));
    EXPECT_EQ(database_.DoGetRows(2), 0);
    ASSERT_TRUE(database_.CreateQuery("SELECT Name FROM tblSoPoints WHERE keySoPoint=", "101"));
    EXPECT_EQ(database_.DoGetRows(2), 0) << "of one that there is not";
}

TEST_F(QueryTest, OutIsAppendedToAndAnswersDoNotMix) {
    Connect(RealisticJob());
    std::vector<std::string> out = {"before"};
    EXPECT_TRUE(
        database_.ReadData("SELECT nameCode FROM tblCodeDefs WHERE keyCodeDef<", "3", 1, &out));
    EXPECT_THAT(out, ElementsAre("before", "STAZ\t", "A~B&C\t"));
    EXPECT_FALSE(
        database_.ReadData("SELECT nameCode FROM tblCodeDefs WHERE keyCodeDef=", "99", 1, &out));
    EXPECT_EQ(out.size(), 3U);
    CDBDataProviderLcm copy(database_);
    EXPECT_EQ(copy.ReadData("SELECT nameCode FROM tblCodeDefs WHERE keyCodeDef=", "5", 1),
              "SECONDO\t");
    EXPECT_TRUE(database_.CreateQuery("SELECT nameCode FROM tblCodeDefs", ""));
    EXPECT_EQ(database_.DoGetRows(1), 0);
    EXPECT_EQ(database_.Rows().size(), 5U);
}

TEST_F(QueryTest, WithoutAConnectionNothingIsRead) {
    EXPECT_FALSE(database_.CreateQuery("SELECT 1", ""));
    EXPECT_LT(database_.DoGetRows(1), 0);
    EXPECT_EQ(database_.ReadData("SELECT 1", "", 1), "");
}

TEST_F(QueryTest, AStatementMayBeTooLong) {
    Connect(RealisticJob());
    const std::string condition(70'000, '1');
    EXPECT_FALSE(database_.CreateQuery("SELECT 1 WHERE 0=", condition));
    EXPECT_FALSE(database_.GenerateQuery(std::wstring(70'000, L' ').append(L"SELECT 1").c_str()));
    EXPECT_TRUE(database_.GenerateQuery(L"SELECT Name FROM tblSoPoints"));
}

/// What a key says becomes part of a statement.
TEST_F(QueryTest, AStatementThatWouldWorkForYearsIsEnded) {
    Connect(RealisticJob());
    std::string everything = "SELECT a.Name FROM tblSoPoints a";
    for (const char c : std::string("bcdefghijk"))
        everything += std::string(", tblSoPoints ") + c;
    EXPECT_EQ(database_.ReadData(everything + " WHERE a.C1=k.C2+j.C3", "", 1), "");
    EXPECT_EQ(database_.ReadData("SELECT aFlag FROM tblTsShots WHERE keyTsShot=", "9", 1), "19\t");
}

/// Of the helper's own queries each may work, and find, as much as the last.
TEST_F(QueryTest, ItsQueriesDoNotShareTheirMeasure) {
    std::vector<Value> values(21'000, 1.0);
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
    for (int i = 0; i < 500; ++i)
        ASSERT_THAT(Read("SELECT a FROM T WHERE a=3"), ElementsAre("3\t"));
    EXPECT_TRUE(database_.GenerateQuery(L"SELECT a FROM T"));
    EXPECT_EQ(database_.DoGetRows(1), 0);
}

/// A damaged table of the job closes the whole database; another one is only not there.
TEST_F(QueryTest, ADamagedTableOfTheJobIsNotReadInPart) {
    std::vector<Table> job = RealisticJob();
    const Table codes = TableNamed(job, "tblCodeDefs");
    const Table other = {
        .name = "Other", .columns = {{"a", Type::Long}}, .rows = {{{std::int64_t{42}}}}};
    const auto damaged = [](const std::vector<Table>& tables, std::size_t offset) {
        std::string bytes = access::Write(Version::Jet4, tables);
        ++bytes[4UL * 4096 + offset]; // the definition of the first one
        return bytes;
    };
    constexpr std::size_t kRowCount = 16;
    constexpr std::size_t kMapPlace = 55;
    EXPECT_FALSE(ConnectTo(damaged({codes, other}, kMapPlace)));
    EXPECT_TRUE(ConnectTo(damaged({codes, other}, kRowCount))) << "all rows are there";
    EXPECT_TRUE(ConnectTo(damaged({other, codes}, kMapPlace)));
    EXPECT_THAT(Read("SELECT a FROM Other"), IsEmpty());
    EXPECT_THAT(Read("SELECT nameCode FROM tblCodeDefs"), SizeIs(5));
}

} // namespace
} // namespace convfile::test
