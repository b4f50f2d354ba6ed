// Job databases: the query helper on Access files that the tests make themselves, and the import of
// damaged, empty and odd ones.

#include "database/DBDataProviderLcm.h"
#include "memory/LinkTimeHost.h"
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
using testing::ElementsAre;

constexpr std::monostate kNull;

class DatabaseTest : public testing::Test {
protected:
    /// Connects to a file with these tables.
    bool Connect(const std::vector<Table>& tables, const access::Style& style = {},
                 Version version = Version::Jet4) {
        return ConnectTo(access::Write(version, tables, style));
    }
    bool ConnectTo(const std::string& bytes) {
        const std::string path = folder_.Write("test.tlsv", bytes);
        return database_.Connect(path.c_str(), true);
    }
    std::vector<std::string> Read(const std::string& sql, int fields) {
        std::vector<std::string> rows;
        const bool read = database_.ReadData(sql, "", fields, &rows);
        EXPECT_EQ(read, !rows.empty()) << sql;
        return rows;
    }

    TempFolder folder_;
    CDBDataProviderLcm database_;
};

std::int64_t L(std::int64_t number) {
    return number;
}

TEST_F(DatabaseTest, GivesTheTextOfEveryType) {
    const Table table{
        .name = "Types",
        .columns = {{"aBool", Type::Boolean},
                    {"aByte", Type::Byte},
                    {"anInt", Type::Integer},
                    {"aLong", Type::Long},
                    {"aMoney", Type::Currency},
                    {"aSingle", Type::Single},
                    {"aDouble", Type::Double},
                    {"aDate", Type::Date},
                    {"aText", Type::Text},
                    {"aMemo", Type::Memo},
                    {"aGuid", Type::Guid},
                    {"aNum", Type::Numeric},
                    {"aBin", Type::Binary}},
        .rows =
            {{{L(1), L(200), L(-32768), L(-2147483648LL), L(-12345600), 0.1, 0.1, 45453.3369,
               "\u00E8\t\u20AC\U0001F601\u65E5", "memo", "0123456789ABCDEF", L(-123456700), "x"}},
             {{L(0), L(0), L(0), L(0), L(0), -0.0, -0.0, 0.0, "", "", kNull, L(0), kNull}},
             {{kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull,
               kNull}},
             {{L(1), L(255), L(32767), L(2147483647), L(9223372036854775807LL), 16777216.0, 1.0 / 3,
               45453.0, "  a ", "x", kNull, L(999999999999999999LL), kNull}},
             {{L(0), L(1), L(1), L(1), L(1), 1e-7, 1e17, -1.25, "?", "x", kNull, L(5000), kNull}}},
        .primaryKey = -1};
    for (const bool compressed : {false, true}) {
        ASSERT_TRUE(Connect({table}, {.compressedText = compressed}));
        EXPECT_THAT(
            Read("SELECT * FROM Types", 13),
            ElementsAre(
                "-1\t200\t-32768\t-2147483648\t-1234.56\t0.1\t0.1\t10/06/2024 08:05:08\t"
                "\xE8\t\x80???\tmemo\t{33323130-3534-3736-3839-414243444546}\t-12345.67\t\t",
                "0\t0\t0\t0\t0\t0\t0\t00:00:00\t\t\t\t0\t\t", "0\t\t\t\t\t\t\t\t\t\t\t\t\t",
                "-1\t255\t32767\t2147483647\t922337203685477.5807\t1.677722E+07\t"
                "0.333333333333333\t10/06/2024\t  a \tx\t\t99999999999999.9999\t\t",
                "0\t1\t1\t1\t0.0001\t1E-07\t1E+17\t29/12/1899 06:00:00\t?\tx\t\t0.5\t\t"));
    }
    ASSERT_TRUE(database_.CreateQuery("SELECT aText, aBin FROM Types", ""));
    EXPECT_LT(database_.DoGetRows(2), 0) << "the last field has no text";
    ASSERT_TRUE(database_.CreateQuery("SELECT aBin, aText FROM Types WHERE aByte=1", ""));
    EXPECT_EQ(database_.DoGetRows(2), 0);
}

TEST_F(DatabaseTest, CutsLongTextsHoweverTheyAreStored) {
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
        ASSERT_TRUE(Connect({table}));
        EXPECT_THAT(Read("SELECT m FROM T", 1),
                    ElementsAre(size < 1024 ? longText.substr(0, size) + "\t" : cut));
    }
}

/// In Jet 3 the offsets in a row are single bytes; further bytes say where they pass 256.
TEST_F(DatabaseTest, ReadsTheNarrowRowsOfJet3) {
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
        ASSERT_TRUE(Connect({table}, {}, Version::Jet3));
        std::string read;
        for (const std::string& row : Read("SELECT * FROM [T\xE8]", 5))
            read += row + "\n";
        EXPECT_EQ(read, expected) << first;
    }
}

TEST_F(DatabaseTest, RowsComeByPrimaryKeyOrAsStored) {
    Table table{.name = "T",
                .columns = {{"a", Type::Text, 2}, {"k", Type::Long, 0}, {"b", Type::Text, 1}},
                .rows = {{{"x", L(3), "1"}},
                         {{"y", L(-1), "2"}},
                         {{"z", L(9), "3"}, true},
                         {{"w", L(2), "4"}}},
                .primaryKey = -1};
    const auto stored = ElementsAre("3\t1\tx\t", "-1\t2\ty\t", "2\t4\tw\t");
    const auto byKey = ElementsAre("-1\t2\ty\t", "2\t4\tw\t", "3\t1\tx\t");
    for (const Version version : {Version::Jet3, Version::Jet4, Version::Ace12}) {
        const auto read = [&] {
            EXPECT_TRUE(Connect({table}, {}, version));
            EXPECT_THAT(Read("SELECT a FROM T WHERE k=-1", 1), ElementsAre("y\t"));
            return Read("SELECT * FROM T", 3);
        };
        table.primaryKey = -1;
        EXPECT_THAT(read(), stored);
        table.otherIndexes = {1};
        EXPECT_THAT(read(), stored) << "an index is no key";
        table.primaryKey = 1;
        EXPECT_THAT(read(), byKey);
        table.otherIndexes = {0, 2};
        EXPECT_THAT(read(), byKey) << "whichever index it is";
        table.secondKey = 2;
        EXPECT_THAT(read(), stored) << "of two columns";
        table.secondKey = -1;
        table.primaryKey = 0;
        EXPECT_THAT(read(), stored) << "no number";
        table.otherIndexes.clear();
    }
}

/// What real files have: dropped columns and later ones, rows that moved, rows without a value of
/// variable length, maps of pages, a definition and rows over several pages.
TEST_F(DatabaseTest, ReadsTablesThatHaveChanged) {
    Table table{.name = "a \"quoted\" name's",
                .columns = {{"k", Type::Long},
                            {"old", Type::Double, -1, true},
                            {"gone", Type::Text, -1, true},
                            {"t", Type::Text},
                            {"b", Type::Boolean},
                            {"later \"x\"", Type::Integer},
                            {"laterText", Type::Text}},
                .rows = {},
                .primaryKey = -1};
    Table fixed{.name = "Fixed",
                .columns = {{"k", Type::Long}, {"b", Type::Boolean}, {"d", Type::Double}},
                .rows = {{{L(1), L(1), 0.5}}, {{L(2), L(0), kNull}}},
                .primaryKey = -1};
    Table wide{.name = "Wide", .columns = {}, .rows = {{}}, .primaryKey = 199};
    std::vector<std::string> expected;
    for (int i = 0; i < 400; ++i) {
        const std::string k = std::to_string(i);
        access::Row row{{L(i), 1.5, "gone", "t" + k, L(i % 2)}};
        if (i % 3 != 0) {
            row.values.emplace_back(L(-i));
            row.values.emplace_back("l" + std::string(static_cast<std::size_t>(i % 5), 'l'));
        }
        row.moved = i % 7 == 0;
        row.deleted = i % 10 == 0;
        table.rows.push_back(row);
        if (!row.deleted)
            expected.push_back(
                k + "\tt" + k + (i % 2 != 0 ? "\t-1\t" : "\t0\t") +
                (i % 3 != 0 ? "-" + k + "\t" + std::get<std::string>(row.values[6]) : "\t") + "\t");
    }
    for (int i = 0; i < 200; ++i) {
        wide.columns.push_back({"column" + std::to_string(i), Type::Long});
        wide.rows[0].values.emplace_back(L(i));
    }
    for (const Version version : {Version::Jet3, Version::Jet4, Version::Ace14}) {
        for (const bool other : {false, true}) {
            ASSERT_TRUE(Connect({fixed, table, wide},
                                {.compressedText = other, .mapsOfPages = other}, version));
            EXPECT_EQ(Read("SELECT * FROM [a \"quoted\" name's]", 5), expected);
            EXPECT_EQ(Read("SELECT \"later \"\"x\"\"\" FROM [a \"quoted\" name's] WHERE k=13", 1),
                      (std::vector<std::string>{"-13\t"}));
            EXPECT_THAT(Read("SELECT * FROM Fixed", 3), ElementsAre("1\t-1\t0.5\t", "2\t0\t\t"));
            EXPECT_THAT(Read("SELECT column0, column199 FROM Wide", 2), ElementsAre("0\t199\t"));
        }
    }
}

/// From where on a number keeps its digits as a text, and dates at the ends of months.
TEST_F(DatabaseTest, KeepsTheDigitsOfLargeNumbers) {
    const Table table{
        .name = "T",
        .columns = {{"c", Type::Currency}, {"n", Type::Numeric}, {"d", Type::Date}},
        .rows = {{{L(999'999'999'999'999), L(99'999'999'999'999), 45473.5}},
                 {{L(1'000'000'000'000'000), L(999'999'999'999'999), 45474.0}},
                 {{L(-1'000'000'000'000'001), L(-9'999'999'999'999'999), 45627.25}},
                 {{L(-9'223'372'036'854'775'807 - 1), L(1'000'000'000'000'000), 45626.0}},
                 {{L(-5), L(-1), 45350.0}},
                 {{L(5000), L(5000), 45350.0}}},
        .primaryKey = -1};
    ASSERT_TRUE(Connect({table}));
    EXPECT_THAT(Read("SELECT * FROM T", 3),
                ElementsAre("99999999999.9999\t9999999999.9999\t30/06/2024 12:00:00\t",
                            "100000000000\t99999999999.9999\t01/07/2024\t",
                            "-100000000000.0001\t-999999999999.9999\t01/12/2024 06:00:00\t",
                            "-922337203685477.5808\t100000000000\t30/11/2024\t",
                            "-0.0005\t-0.0001\t28/02/2024\t", "0.5\t0.5\t28/02/2024\t"));
    EXPECT_THAT(Read("SELECT d FROM T WHERE n=9999999999.9999", 1),
                ElementsAre("30/06/2024 12:00:00\t"));
    EXPECT_THAT(Read("SELECT d FROM T WHERE c=99999999999.9999", 1),
                ElementsAre("30/06/2024 12:00:00\t"));
}

TEST_F(DatabaseTest, GivesAsManyFieldsAsAreAskedFor) {
    ASSERT_TRUE(Connect(RealisticJob()));
    EXPECT_EQ(database_.ReadData("SELECT Name, C1 FROM tblSoPoints WHERE keySoPoint=", "101", 1),
              "S100\t");
    EXPECT_EQ(database_.ReadData("SELECT Name, C1 FROM tblSoPoints WHERE keySoPoint=", "101", 4),
              "S100\t5000\t\t\t");
    EXPECT_EQ(database_.ReadData("SELECT Name FROM tblSoPoints WHERE keySoPoint=", "0101", 1),
              "S100\t");
    EXPECT_EQ(database_.ReadData("SELECT Name FROM tblSoPoints WHERE keySoPoint=", "777", 1), "");
    EXPECT_EQ(database_.ReadData("SELECT Name FROM tblSoPoints WHERE keySoPoint=", "", 1), "");
    EXPECT_EQ(database_.ReadData("SELECT Nome FROM tblSoPoints", "", 1), "");
    EXPECT_EQ(database_.ReadData("SELECT Name FROM noSuchTable", "", 1), "");
    EXPECT_TRUE(database_.GenerateQuery(L"SELECT keySoPoint FROM tblSoPoints WHERE Name='P3'"));
    EXPECT_EQ(database_.DoGetRows(1), 0);
    EXPECT_THAT(database_.Rows(), ElementsAre("203\t"));
    EXPECT_ANY_THROW(database_.DoGetRows(1)) << "no row is left";
    EXPECT_ANY_THROW(database_.DoGetRows(1));
    EXPECT_EQ(database_.Rows().size(), 1U);
}

TEST_F(DatabaseTest, OutIsAppendedToAndAnswersDoNotMix) {
    ASSERT_TRUE(Connect(RealisticJob()));
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

TEST_F(DatabaseTest, WithoutAConnectionNothingIsRead) {
    EXPECT_FALSE(database_.CreateQuery("SELECT 1", ""));
    EXPECT_LT(database_.DoGetRows(1), 0);
    EXPECT_EQ(database_.ReadData("SELECT 1", "", 1), "");
}

/// What a key says becomes part of a statement: it can make it fail, or another SELECT, and no
/// more.
TEST_F(DatabaseTest, StatementsCanOnlyRead) {
    ASSERT_TRUE(Connect(RealisticJob()));
    for (const char* statement :
         {"SELECT 1; DELETE FROM tblTsShots", "DELETE FROM tblTsShots", "DROP TABLE tblTsShots",
          "ATTACH 'x.db' AS x", "PRAGMA query_only=OFF", "SELECT load_extension('x')",
          "SELECT readfile('/etc/passwd')", "SELECT zeroblob(1000000000)", "VACUUM",
          "WITH RECURSIVE r(n) AS (SELECT 1 UNION ALL SELECT n+1 FROM r) SELECT n FROM r",
          "CREATE TEMP TABLE t(a)", "SELECT \"no such column\""}) {
        EXPECT_FALSE(database_.CreateQuery(statement, "")) << statement;
    }
    EXPECT_EQ(database_.ReadData("SELECT aFlag FROM tblTsShots WHERE keyTsShot=", "9", 1), "19\t");
    // One that would work for years is ended.
    std::string everything = "SELECT a.Name FROM tblSoPoints a";
    for (const char c : std::string("bcdefghijk"))
        everything += std::string(", tblSoPoints ") + c;
    EXPECT_EQ(database_.ReadData(everything + " WHERE a.C1=k.C2+j.C3", "", 1), "");
    EXPECT_EQ(database_.ReadData("SELECT aFlag FROM tblTsShots WHERE keyTsShot=", "9", 1), "19\t");
}

TEST_F(DatabaseTest, WhatIsNoDatabaseShowsWhereTheDriverIs) {
    memory::TakeMessages();
    const std::string good = access::Write(Version::Jet4, RealisticJob());
    std::string zeros(good.size(), '\0');
    std::string newer = good;
    newer[20] = 99;
    for (const std::string& bytes : {std::string(), std::string("text\n"), zeros, newer,
                                     good.substr(0, 4096), good.substr(0, good.size() / 2)}) {
        EXPECT_FALSE(ConnectTo(bytes)) << bytes.size();
        ExpectDriverMessage(memory::TakeMessages());
    }
    EXPECT_FALSE(database_.Connect(folder_.Path("missing.tlsv").c_str(), false));
    ExpectDriverMessage(memory::TakeMessages());
}

/// A damaged table of the job closes the whole database; another one is only not there.
TEST_F(DatabaseTest, ADamagedTableOfTheJobIsNotReadInPart) {
    std::vector<Table> tables = RealisticJob();
    tables.push_back(
        {.name = "Other", .columns = {{"a", Type::Long}}, .rows = {{{L(42)}}}, .primaryKey = -1});
    const std::string good = access::Write(Version::Jet4, tables);
    ASSERT_TRUE(ConnectTo(good));
    EXPECT_EQ(database_.ReadData("SELECT a FROM Other", "", 1), "42\t");

    // The definitions stand on pages 4 and on, in the order of the tables.
    const auto damaged = [&](std::size_t table, std::size_t offset) {
        std::string bytes = good;
        std::size_t definition = 0;
        for (std::size_t page = 4, found = 0; found <= table; ++page) {
            if (bytes[page * 4096] == 2 && found++ == table)
                definition = page * 4096;
        }
        bytes[definition + offset] = static_cast<char>(bytes[definition + offset] + 1);
        return bytes;
    };
    constexpr std::size_t kRowCount = 16;
    constexpr std::size_t kMapPlace = 55;
    memory::TakeMessages();
    EXPECT_FALSE(ConnectTo(damaged(6, kMapPlace)));
    ExpectDriverMessage(memory::TakeMessages());
    EXPECT_TRUE(ConnectTo(damaged(6, kRowCount))) << "all rows are there";
    EXPECT_TRUE(ConnectTo(damaged(10, kMapPlace)));
    EXPECT_EQ(database_.ReadData("SELECT a FROM Other", "", 1), "");
    EXPECT_EQ(database_.ReadData("SELECT nameCode FROM tblCodeDefs", "", 1), "STAZ\t");

    tables = RealisticJob();
    std::erase_if(tables, [](const Table& table) { return table.name == "tblCrdImageData"; });
    EXPECT_TRUE(Connect(tables));
    EXPECT_EQ(database_.ReadData("SELECT ImageType FROM tblCrdImageData", "", 1), "");
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

std::string JobJson(const TempFolder& folder, const std::string& bytes, app::Conversion& result) {
    ConvertAs("tlsv", folder.Write("job.tlsv", bytes), result);
    return JsonOf(result);
}

TEST(JobImport, EveryVersionOfTheFileGivesTheSame) {
    const TempFolder folder;
    app::Conversion job;
    const std::string expected = JobJson(folder, access::Write(Version::Jet4, RealisticJob()), job);
    for (const Version version : {Version::Jet3, Version::Ace12, Version::Ace14}) {
        app::Conversion other;
        EXPECT_EQ(JobJson(folder, access::Write(version, RealisticJob()), other), expected);
    }
}

/// Every prefix, and every byte of the definitions changed: a job or none, never a crash.
TEST(JobImport, SurvivesPrefixesAndDamage) {
    const TempFolder folder;
    const std::string good = access::Write(Version::Ace14, RealisticJob());
    for (std::size_t length = 0; length < good.size(); length += 509) {
        app::Conversion cut;
        JobJson(folder, good.substr(0, length), cut);
        EXPECT_FALSE(cut.converted) << length;
    }
    constexpr std::size_t kPage = 4096;
    for (std::size_t i = 2 * kPage; i < 8 * kPage; i += 211) {
        std::string bytes = good;
        bytes[i] = static_cast<char>(bytes[i] ^ 0xFF);
        app::Conversion damaged;
        JobJson(folder, bytes, damaged);
    }
}

} // namespace
} // namespace convfile::test
