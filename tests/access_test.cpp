// The reader of Access files: what it takes, what it refuses and what it says then.

#include "database/Engine.h"
#include "database/access/AccessFile.h"
#include "database/access/AccessText.h"
#include "database/access/RowConverter.h"
#include "tests/support/AccessWriter.h"
#include "tests/support/Files.h"
#include "tests/support/JobDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <random>

namespace convfile::database {
namespace {

using test::TempFolder;
using test::access::Table;
using test::access::Type;
using test::access::Value;
using test::access::Version;
using testing::HasSubstr;

/// How many rows each table of a file has; all their values were read, too.
using Counts = std::map<std::string, std::size_t>;

Counts Read(const std::string& path) {
    AccessFile file;
    file.Open(path);
    std::vector<AccessFile::Listed> tables;
    file.ListTables(tables);
    Counts counts;
    for (const AccessFile::Listed& listed : tables) {
        AccessTable table;
        file.Define(listed, table);
        RowConverter converter(file, table);
        std::size_t& count = counts[listed.name];
        file.ReadRows(table, [&](const std::vector<AccessValue>& row) {
            converter.Convert(row);
            ++count;
        });
    }
    return counts;
}

/// What the reader says of a file that it refuses; nothing where it takes it.
std::string Refusal(const std::string& path) {
    try {
        Read(path);
        return {};
    } catch (const EngineError& error) {
        return error.what();
    }
}

/// The bytes of a file, and how they are damaged: a number at a place of a page.
struct Bytes {
    std::string bytes;
    std::size_t page = 4096;

    Bytes& Set(std::size_t number, std::size_t offset, std::uint32_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i)
            bytes.at(number * page + offset + i) = static_cast<char>(value >> (8 * i));
        return *this;
    }
    std::uint32_t Get(std::size_t number, std::size_t offset, std::size_t size) const {
        return NumberAt(bytes, number * page + offset, size);
    }
};

Value L(std::int64_t number) {
    return number;
}

/// Three rows: the table's definition stands on page 4, its rows on page 5, its memos on page 6.
Table Stations() {
    return {.name = "tblStations",
            .columns = {{"key", Type::Long},
                        {"Notes", Type::Memo},
                        {"Guid", Type::Guid},
                        {"Height", Type::Numeric},
                        {"Price", Type::Currency}},
            .rows = {{{L(1), std::string(200, 'a'), std::string(16, 'g'), L(15000), L(5)}},
                     {{L(2), std::string(2000, 'b'), std::string(16, 'g'), L(15000), L(5)}},
                     {{L(3), "short", std::string(16, 'g'), L(15000), L(5)}}},
            .primaryKey = 0};
}

TEST(AccessFile, SaysWhatIsNoneThatCanBeRead) {
    const TempFolder folder;
    EXPECT_EQ(Refusal(folder.Path("missing")), "cannot be opened");
    for (const Version version : {Version::Jet3, Version::Jet4, Version::Ace14}) {
        const std::string good = test::access::Write(version, {Stations()});
        const auto refusal = [&](std::size_t offset, char change) {
            std::string bytes = good;
            bytes[offset] = static_cast<char>(bytes[offset] ^ change);
            return Refusal(folder.Write("file", bytes));
        };
        const std::size_t passwordEnd = 0x42 + (version == Version::Jet3 ? 20 : 40);
        EXPECT_EQ(refusal(4, 1), "is no Access file");
        EXPECT_EQ(refusal(19, 1), "is no Access file");
        EXPECT_EQ(refusal(20, 64), "is an Access file of unknown version " +
                                       std::to_string(64 ^ static_cast<int>(version)));
        const int newest = static_cast<int>(version) ^ 6;
        EXPECT_EQ(refusal(20, static_cast<char>(version == Version::Jet3 ? 0 : newest)), "");
        EXPECT_EQ(refusal(20, static_cast<char>(newest ^ 1)),
                  "is an Access file of unknown version 7");
        EXPECT_EQ(refusal(0x3D, 1), "");
        EXPECT_EQ(refusal(0x3E, 1), "is encrypted");
        EXPECT_EQ(refusal(0x41, 1), "is encrypted");
        EXPECT_EQ(refusal(0x42, 1), "is protected by a password");
        EXPECT_EQ(refusal(passwordEnd - 1, 1), "is protected by a password");
        EXPECT_EQ(refusal(passwordEnd, 1), "");
    }
    for (const std::string& bytes :
         {std::string(), std::string("text\n"), std::string(100'000, '\0')})
        EXPECT_EQ(Refusal(folder.Write("file", bytes)), "is no Access file");
}

/// Reading a terabyte to its end would be noticed.
TEST(AccessFile, LooksAtTheBeginningFirst) {
    const TempFolder folder;
    const std::string path = folder.Write("zeros", "");
    std::error_code error;
    std::filesystem::resize_file(path, std::uintmax_t{1} << 40, error);
    if (error)
        GTEST_SKIP() << "no room for a file of zeros";
    EXPECT_EQ(Refusal(path), "is no Access file");
}

TEST(AccessFile, SaysWhichTableIsDamagedAndHow) {
    const TempFolder folder;
    const Bytes good{test::access::Write(Version::Jet4, {Stations()})};
    ASSERT_EQ(Refusal(folder.Write("good", good.bytes)), "");
    ASSERT_EQ(good.Get(4, 0, 1), 2U);
    ASSERT_EQ(good.Get(5, 4, 4), 4U) << "its data page";
    const std::uint32_t slots[] = {good.Get(5, 14, 2), good.Get(5, 16, 2), good.Get(5, 18, 2)};
    const std::size_t names = 63 + 12 + 5 * 25;
    const std::size_t indexes = names + 10 + 2 * std::string_view("keyNotesGuidHeightPrice").size();
    const std::size_t map = good.Get(3, 14, 2);
    const struct {
        Bytes bytes;
        std::string says;
    } kCases[] = {
        {Bytes(good).Set(2, 0, 1, 1), "table MSysObjects: page 2 is no definition of a table"},
        {Bytes(good).Set(4, 0, 5, 1), "page 4 is no definition of a table"},
        {Bytes(good).Set(4, 4, 77, 4), "page 77 lies outside the file"},
        {Bytes(good).Set(4, 4, 4, 4), "more rows share their bytes than the file has"},
        {Bytes(good).Set(4, 45, 0, 2), "it has 0 columns"},
        {Bytes(good).Set(4, 45, 256, 2), "it has 256 columns"},
        {Bytes(good).Set(4, 51, 900, 4), "its definition is cut"},
        {Bytes(good).Set(4, names, 0xFFFF, 2), "its definition is cut"},
        {Bytes(good).Set(4, 47, 0x7FFFFFFF, 4), ""}, // the one that matters is found
        {Bytes(good).Set(4, 47, 200, 4).Set(4, indexes + 52 + 23, 0, 1), "its definition is cut"},
        {Bytes(good).Set(4, indexes + 52 + 8, 1, 4), "its primary key has no index"},
        {Bytes(good).Set(4, indexes + 52 + 8, 1 << 24, 4), "its primary key has no index"},
        {Bytes(good).Set(4, 55, 99, 1), "page 3 has no row 99"},
        {Bytes(good).Set(4, 56, 2, 1), "page 2 is no data page"},
        {Bytes(good).Set(4, 56, 99, 1), "page 99 lies outside the file"},
        {Bytes(good).Set(3, map, 2, 1), "its map of pages is damaged"},
        {Bytes(good).Set(3, map, 1, 1), "lies outside the file"},
        {Bytes(good).Set(3, map, 1, 1).Set(3, map + 5, 0, 1).Set(3, map + 65, 6, 4),
         "page 6 is no map of pages"}, // its last entry
        {Bytes(good).Set(3, map + 5, 0, 1), "its map of pages lacks some (0 of 3 rows found)"},
        {Bytes(good).Set(3, 14, 4096 - 5, 2), "its map of pages lacks some (0 of 3 rows found)"},
        {Bytes(good).Set(3, map + 6, 0xFF, 1), ""}, // pages that are none of the table's
        {Bytes(good).Set(5, 0, 4, 1), "page 5 is none of its data pages (0 of 3 rows found)"},
        {Bytes(good).Set(5, 4, 7, 4), "page 5 is none of its data pages (0 of 3 rows found)"},
        {Bytes(good).Set(5, 12, 2, 2), "page 5 lacks rows (2 of 3 rows found)"},
        {Bytes(good).Set(5, 12, 4, 2), "page 5 has a row 3 that overlaps another"},
        {Bytes(good).Set(5, 12, 0x7FFF, 2), "page 5 has more rows than fit into it"},
        {Bytes(good).Set(5, 16, slots[0] + 1, 2), "page 5 has a row 1 that overlaps another"},
        {Bytes(good).Set(5, 18, 14 + 2 * 3 - 1, 2), "page 5 has a row 2 that overlaps another"},
        {Bytes(good).Set(5, 18, 14 + 2 * 3, 2), "a row lacks its key"}, // the zeros before it
        {Bytes(good).Set(5, 14, slots[0] | 0x4000, 2), "a row that moved is not where it should"},
        {Bytes(good).Set(5, 14, slots[0] | 0x8000, 2),
         "nothing leads to a row that moved (2 of 3 rows found)"},
        {Bytes(good).Set(5, slots[1], 999, 2), "a row does not hold the values that it should"},
        {Bytes(good).Set(5, 4096 - 3, (4096 - slots[0] - 3) / 2, 2),
         "a row does not hold the values that it should"},
        {Bytes(good).Set(5, slots[2] + 2 + 4 + 16 + 17 + 8, 11, 1), "a long text is cut"},
        {Bytes(good).Set(5, slots[0] + 2 + 4 + 16 + 17 + 8 + 5, 99, 1),
         "page 99 lies outside the file"},
        {Bytes(good).Set(5, slots[0] + 2 + 4 + 16 + 17 + 8, 0xFFFF, 2), "a long text is cut"},
        {Bytes(good).Set(6, 14, good.Get(6, 14, 2) | 0xC000, 2), "a long text was deleted"},
        {Bytes(good).Set(6, good.Get(6, 18, 2), 99 << 8, 4), "page 99 lies outside the file"},
        {Bytes(good).Set(4, 63 + 12 + 2 * 25 + 23, 15, 2), "a value of its column Guid is cut"},
        {Bytes(good).Set(4, 63 + 12 + 3 * 25 + 23, 16, 2), "a value of its column Height is cut"},
        {Bytes(good).Set(4, 63 + 12 + 4 * 25 + 23, 7, 2), "a value of its column Price is cut"},
        {Bytes(good).Set(4, 63 + 12 + 4 * 25 + 23, 0x7FFF, 2), "a row does not hold the values"},
        {Bytes(good).Set(5, 4095, 0x1E, 1), "a row lacks its key"},
        {Bytes(good).Set(4, 16, 2, 4), ""},
        {Bytes(good).Set(4, 16, 0x7FFFFFFF, 4), ""},
    };
    for (const auto& each : kCases) {
        const std::string says = Refusal(folder.Write("damaged", each.bytes.bytes));
        const auto at = &each - &kCases[0];
        EXPECT_EQ(says.empty(), each.says.empty()) << at << ": " << says;
        EXPECT_THAT(says, HasSubstr(each.says)) << at;
        if (at > 0 && !each.says.empty()) {
            EXPECT_THAT(says, HasSubstr("table tblStations: ")) << at;
        }
    }
    // A memo's field that is shorter than what it begins with.
    const Table text{.name = "tblStations",
                     .columns = {{"t", Type::Text}},
                     .rows = {{{"12345"}}},
                     .primaryKey = -1};
    Bytes memo{test::access::Write(Version::Jet4, {text})};
    memo.Set(4, 63, 0x0C, 1);
    EXPECT_EQ(Refusal(folder.Write("memo", memo.bytes)), "table tblStations: a long text is cut");
    EXPECT_EQ(Refusal(folder.Write("cut", good.bytes.substr(0, 8UL * 4096))),
              "table MSysObjects: page 8 lies outside the file (0 of 3 rows found)");
}

TEST(AccessFile, ReadsARowThatMovedFromWhereItWas) {
    const TempFolder folder;
    Table table = Stations();
    table.rows[0].moved = true;
    table.rows[1].moved = true;
    table.rows[1].deleted = true;
    const Bytes good{test::access::Write(Version::Jet4, {table})};
    EXPECT_EQ(Read(folder.Write("moved", good.bytes)), (Counts{{"tblStations", 2}}));
    const std::uint32_t leads = good.Get(5, 16, 2) & 0x1FFF;
    const std::string moved = "table tblStations: a row that moved is not where it should be";
    for (const auto& bytes : {Bytes(good).Set(5, leads, 1, 1), Bytes(good).Set(5, leads + 1, 6, 1),
                              Bytes(good).Set(5, 14, good.Get(5, 14, 2) & 0x3FFF, 2),
                              Bytes(good).Set(5, 14, good.Get(5, 14, 2) | 0xC000, 2),
                              // Both lead to one row.
                              Bytes(good)
                                  .Set(5, 20, good.Get(5, 20, 2) & 0x7FFF, 2)
                                  .Set(5, good.Get(5, 20, 2) & 0x1FFF, good.Get(5, leads, 4), 4)})
        EXPECT_EQ(Refusal(folder.Write("damaged", bytes.bytes)), moved);
}

/// In a large file each map page of a table has the bits of 16,352 pages: the last of the first
/// one's, and one of the second one's.
TEST(AccessFile, FindsRowsFarBackInTheFile) {
    const TempFolder folder;
    constexpr std::size_t kPagesOfEach = (2048 - 4) * std::size_t{8};
    Bytes file{test::access::Write(Version::Jet3, {Stations()}, {.mapsOfPages = true}), 2048};
    const std::uint32_t map = file.Get(3, 10, 2);
    const std::uint32_t mapPage = file.Get(3, map + 1, 4);
    ASSERT_EQ(file.Get(mapPage, 4, 1), 1U << 5) << "the table's rows are on page 5";
    const std::string rows = file.bytes.substr(std::size_t{5} * 2048, 2048);
    file.bytes.resize((kPagesOfEach + 2) * 2048);
    file.Set(5, 0, 0, 1).Set(mapPage, 4, 0, 1).Set(3, map + 1, 0, 4);
    for (const std::size_t page : {kPagesOfEach - 1, kPagesOfEach + 1}) {
        Bytes far = file;
        far.bytes.replace(page * 2048, 2048, rows);
        const std::size_t bit = page % kPagesOfEach;
        far.Set(mapPage, 4 + bit / 8, 1U << bit % 8, 1);
        far.Set(3, map + 1 + 4 * (page / kPagesOfEach), mapPage, 4);
        EXPECT_EQ(Read(folder.Write("far", far.bytes)), (Counts{{"tblStations", 3}})) << page;
    }
}

/// What would be read again and again is refused: a file costs what it holds.
TEST(AccessFile, GivesEachByteToOneRow) {
    const TempFolder folder;
    // Every other slot begins where the page does.
    Table table{.name = "T", .columns = {{"a", Type::Text}}, .rows = {}};
    for (int i = 0; i < 100; ++i)
        table.rows.push_back({{std::string(8, 'x')}});
    Bytes overlapping{test::access::Write(Version::Jet4, {table})};
    for (std::size_t slot = 1; slot < 100; slot += 2)
        overlapping.Set(5, 14 + 2 * slot, 14 + 2 * 100, 2);
    EXPECT_THAT(Refusal(folder.Write("slots", overlapping.bytes)), HasSubstr("overlaps another"));

    // A thousand memos that are one.
    Table memos{.name = "T", .columns = {{"m", Type::Memo}}, .rows = {}};
    memos.rows.push_back({{std::string(600, 'm')}});
    std::string bytes = test::access::Write(Version::Jet4, {memos});
    const std::string one = bytes.substr(5UL * 4096 + 4096 - 100, 100);
    const std::size_t field = one.find("\xB0\x04", 0);
    ASSERT_NE(field, std::string::npos);
    for (int i = 1; i < 150; ++i)
        memos.rows.push_back({{std::string(6, 'm')}});
    bytes = test::access::Write(Version::Jet4, {memos});
    const std::string inline6 = std::string("\x0C\0\0\x80", 4) + std::string(8, '\0');
    const std::string pointer = one.substr(field, 12);
    for (std::size_t at = bytes.find(inline6); at != std::string::npos; at = bytes.find(inline6))
        bytes.replace(at, pointer.size(), pointer);
    EXPECT_EQ(Refusal(folder.Write("memos", bytes)),
              "table T: more rows share their bytes than the file has");

    // Two tables that are one: the list's row of the second, of six columns, begins with its page.
    std::string twice = test::access::Write(Version::Jet4, {table, Stations()});
    const std::size_t listed = twice.rfind(std::string("\6\0\6\0\0\0", 6));
    ASSERT_NE(listed, std::string::npos);
    twice[listed + 2] = 4;
    EXPECT_EQ(Refusal(folder.Write("twice", twice)),
              "table MSysObjects: tblStations has the definition of another table");
}

/// Files with one to three bits changed, or cut: refused, or read with all their rows.
TEST(AccessFile, NoDamageLosesRowsUnnoticed) {
    const TempFolder folder;
    Table table = Stations();
    for (int i = 4; i < 90; ++i)
        table.rows.push_back({{L(i), "n", std::string(16, 'g'), L(15000), L(5)}});
    table.rows[5].moved = true;
    table.rows[6].deleted = true;
    const Counts expected = {{"tblStations", 88}, {"Other", 2}};
    const Table other{.name = "Other",
                      .columns = {{"a", Type::Long}},
                      .rows = {{{L(1)}}, {{L(2)}}},
                      .primaryKey = -1};
    const char* const wanted = std::getenv("CONVFILE_DAMAGED_FILES");
    const int count = wanted ? std::atoi(wanted) : 2000;
    std::vector<std::string> files;
    for (const Version version : {Version::Jet3, Version::Jet4, Version::Ace12, Version::Ace14}) {
        for (const bool mapsOfPages : {false, true})
            files.push_back(
                test::access::Write(version, {table, other}, {.mapsOfPages = mapsOfPages}));
    }
    std::mt19937 random(20260101);
    int read = 0;
    for (int i = 0; i < count; ++i) {
        std::string bytes = files[static_cast<std::size_t>(i) % files.size()];
        const std::size_t flips = 1 + random() % 3;
        for (std::size_t flip = 0; flip < flips; ++flip) {
            char& byte = bytes[random() % bytes.size()];
            byte = static_cast<char>(byte ^ 1 << random() % 8);
        }
        if (i % 10 == 0)
            bytes.resize(random() % bytes.size());
        const std::string path = folder.Write("damaged", bytes);
        try {
            const Counts counts = Read(path);
            ++read;
            for (const auto& [name, rows] : counts) {
                const auto whole = expected.find(name);
                EXPECT_TRUE(whole == expected.end() || rows >= whole->second)
                    << "file " << i << ": " << name << " has " << rows << " rows";
            }
        } catch (const EngineError&) { // NOLINT(bugprone-empty-catch): that is allowed
        }
    }
    EXPECT_GT(read, count / 3) << "most bits are of values";
}

TEST(AccessText, TextsOfEveryLength) {
    const auto text = [](std::string_view bytes) { return DecodeText(bytes, false); };
    using namespace std::string_view_literals;
    EXPECT_EQ(text(""sv), "");
    EXPECT_EQ(text("a"sv), "");
    EXPECT_EQ(text("a\0"sv), "a");
    EXPECT_EQ(text("a\0b"sv), "a");
    EXPECT_EQ(text("\xAC\x20\0\1"sv), "\x80?");
    EXPECT_EQ(text("\xFF\xFE"sv), "");
    EXPECT_EQ(text("\xFF\xFEx"sv), "x");
    EXPECT_EQ(text("\xFF\xFE\xE8y"sv), "\xE8y");
    EXPECT_EQ(text("\xFF\xFEz\0\xAC\x20\0u"sv), "z\x80u");
    EXPECT_EQ(text("\xFF\xFEz\0\xAC"sv), "z");
    EXPECT_EQ(text("\xFF\xFEz\0\xAC\x20"sv), "z\x80");
    EXPECT_EQ(text("\xFF\xFE\0\xAC\x20\xAC\x20\0"sv), "\x80\x80");
    EXPECT_EQ(DecodeText("\xFF\xFEx"sv, true), "\xFF\xFEx") << "Jet 3 has no such texts";
}

} // namespace
} // namespace convfile::database
