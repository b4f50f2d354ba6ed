// How a file was read: each file below golden/ gives the account that lies beside it, and what an
// account says holds whatever the file.
//
// CONVFILE_UPDATE_GOLDEN=1 in the environment rewrites the accounts, as it does the field books.

#include "framework/AccountKeeper.h"
#include "host/ConvListener.h"
#include "memory/PointLibrary.h"
#include "tests/support/Convert.h"
#include "tests/support/Files.h"
#include "views/Remarks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

namespace convfile::test {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

constexpr std::size_t kSmallText = 4096;

/// The account and the lines of the records, in a form that is easily read and compared.
std::string AccountText(const views::Conversion& c) {
    const FileAccount& account = c.account;
    std::string text =
        "{\"format\": \"" + account.format + "\", \"lines\": " + std::to_string(account.lines) +
        ", \"read\": " + std::to_string(account.read) +
        ", \"skipped\": " + std::to_string(account.skipped) + ",\n \"angles\": \"" +
        account.angleUnit + "\", \"lengths\": \"" + account.lengthUnit + "\",\n \"remarks\": [";
    const char* gap = "\n";
    for (const Remark& remark : account.remarks) {
        text += gap + ("  \"" + views::ShownRemark(remark)) + "\"";
        gap = ",\n";
    }
    text += "],\n \"record lines\": {";
    std::map<std::string, std::string> lines;
    ForEachRecordLine(c, [&](const char* kind, std::uint64_t line) {
        std::string& list = lines[kind];
        list += (list.empty() ? "" : ", ") + std::to_string(line);
    });
    gap = "\n";
    for (const auto& [kind, list] : lines) {
        text += gap + ("  \"" + kind) + "\": [" + list + "]";
        gap = ",\n";
    }
    return text + "}}\n";
}

TEST(Account, EveryFileGivesItsOwn) {
    const char* const update = std::getenv("CONVFILE_UPDATE_GOLDEN");
    for (const Golden& golden : GoldenFiles()) {
        views::Conversion conversion;
        ConvertAs(golden.format, golden.Path(), conversion);
        std::filesystem::path path = golden.json;
        path.replace_extension(".account.json");
        const std::string expected = std::filesystem::exists(path) ? ReadBytes(path) : "";
        const std::string actual = AccountText(conversion);
        EXPECT_EQ(expected, actual) << golden.file;
        if (update && expected != actual)
            WriteBytes(path, actual);
    }
}

views::Conversion& Converted(const Golden& golden, std::string_view bytes,
                             views::Conversion& result) {
    ConvertBytesAs(golden.format, golden.file.filename().string(), bytes, result);
    return result;
}

/// The files that are small, are texts, and whose lines can be taken out one by one.
std::vector<Golden> TextFiles() {
    std::vector<Golden> files = GoldenFiles();
    std::erase_if(files, [](const Golden& golden) {
        const Format& format = *FormatByName(golden.format);
        return format.kind == FormatKind::Database || golden.format == "mts" ||
               std::filesystem::file_size(golden.file) > kSmallText;
    });
    return files;
}

std::vector<std::string> LinesOf(std::string_view bytes) {
    std::vector<std::string> lines;
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size() - 1) + 1;
        lines.emplace_back(bytes.substr(0, end));
        bytes.remove_prefix(end);
    }
    return lines;
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line;
    return text;
}

/// A line that was skipped and gave no record can be taken out, and the records stay the same. (MWG
/// writes a record again for a line that it does not know.)
TEST(Account, SkippedLinesChangeNoRecord) {
    std::size_t skipped = 0;
    for (const Golden& golden : TextFiles()) {
        const std::vector<std::string> lines = LinesOf(ReadBytes(golden.file));
        views::Conversion whole;
        Converted(golden, Joined(lines), whole);
        if (whole.account.skipped == 0 || whole.account.lines != lines.size() ||
            golden.format == "mwg")
            continue;
        std::set<std::uint64_t> givers;
        ForEachRecordLine(whole, [&](const char*, std::uint64_t line) { givers.insert(line); });
        for (const Remark& remark : whole.account.remarks) {
            for (const std::uint64_t line : remark.lines) {
                if (remark.kind != RemarkKind::Unknown || givers.contains(line))
                    continue;
                ++skipped;
                std::vector<std::string> others = lines;
                others.erase(others.begin() + static_cast<std::ptrdiff_t>(line) - 1);
                views::Conversion without;
                Converted(golden, Joined(others), without);
                EXPECT_TRUE(JsonOf(without) == JsonOf(whole)) << golden.file << " line " << line;
                EXPECT_EQ(without.account.skipped + 1, whole.account.skipped)
                    << golden.file << " line " << line;
            }
        }
    }
    EXPECT_GT(skipped, 50U);
}

bool IsFreeText(const views::Conversion& conversion, std::uint64_t line) {
    return std::ranges::any_of(conversion.account.remarks, [&](const Remark& remark) {
        return (remark.kind == RemarkKind::Unknown || remark.kind == RemarkKind::NotRead) &&
               std::ranges::find(remark.lines, line) != remark.lines.end();
    });
}

/// Nonsense in the place of a line that was read does not pass unnoticed.
TEST(Account, NonsenseIsNoticed) {
    for (const Golden& golden : TextFiles()) {
        const std::vector<std::string> lines = LinesOf(ReadBytes(golden.file));
        views::Conversion whole;
        Converted(golden, Joined(lines), whole);
        const std::string expected = JsonOf(whole) + AccountText(whole);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            // Free text in the place of free text, or nonsense of nonsense, is the same again; a
            // download begins with some.
            if (golden.format == "gt7" && i < 2)
                continue;
            if (lines[i].find_first_of("0123456789") == std::string::npos ||
                IsFreeText(whole, i + 1))
                continue;
            std::vector<std::string> others = lines;
            others[i] = "lorem ipsum dolor sit\n";
            if (others[i] == lines[i])
                continue;
            views::Conversion changed;
            Converted(golden, Joined(others), changed);
            EXPECT_TRUE(JsonOf(changed) + AccountText(changed) != expected)
                << golden.file << " line " << i + 1 << ": " << lines[i];
        }
    }
}

/// Listening changes nothing of what is written.
TEST(Account, ListenersDoNotChangeTheBook) {
    for (const Golden& golden : GoldenFiles()) {
        views::Conversion heard;
        ConvertAs(golden.format, golden.Path(), heard);
        views::Conversion unheard;
        std::string path = golden.Path();
        unheard.path = path;
        memory::PointLibrary points(unheard.notifications);
        memory::DrawingEngine drawing(unheard.notifications);
        const Format& format = *FormatByName(golden.format);
        unheard.converted = format.convert({.fieldBook = unheard.fieldBook,
                                            .cadastralDocument = &unheard.document,
                                            .pointLibrary = &points,
                                            .drawing = &drawing},
                                           &path);
        unheard.cadastral = heard.cadastral;
        unheard.messages = memory::TakeMessages();
        EXPECT_EQ(JsonOf(unheard), JsonOf(heard)) << golden.file;
    }
}

TEST(Account, AMillionRemarksAreACountAndTwentyLines) {
    constexpr Cause kThis = {RemarkKind::Unknown, "this"};
    constexpr Cause kThat = {RemarkKind::NotRead, "that"};
    FileAccount account;
    {
        AccountKeeper keeper(&account, nullptr, nullptr);
        for (std::uint64_t line = 1; line <= 1'000'000; ++line) {
            keeper.PieceBegins({.text = "x\n", .number = line});
            keeper.Note(kThat);
            if (line % 2 == 0)
                keeper.Skip(kThis);
            keeper.Note(kThat);
        }
    }
    EXPECT_EQ(account.skipped, 500'000U);
    ASSERT_THAT(account.remarks, SizeIs(2));
    EXPECT_EQ(account.remarks[0].text, "that");
    EXPECT_EQ(account.remarks[0].count, 1'000'000U);
    EXPECT_EQ(views::ShownRemark(account.remarks[0]), "not-read: that (1000000 lines: 1-1000000)");
    EXPECT_THAT(account.remarks[1].lines, SizeIs(20));
    EXPECT_EQ(views::ShownRemark(account.remarks[1]),
              "unknown: this (500000 lines: 2, 4, 6, 8, 10, ...)");
}

/// What comes with a record is told at that record's line, which may lie before others.
TEST(Account, KeepsTheSmallestLinesWhateverTheirOrder) {
    constexpr Cause kLate = {RemarkKind::Declined, "late"};
    FileAccount account;
    {
        AccountKeeper keeper(&account, nullptr, nullptr);
        for (const std::uint64_t line : {7U, 3U, 7U, 3U, 9U})
            keeper.NoteAt(kLate, line);
        keeper.NoteAt(kLate, 0);
    }
    ASSERT_THAT(account.remarks, SizeIs(1));
    EXPECT_THAT(account.remarks[0].lines, ElementsAre(3, 7, 9));
    EXPECT_EQ(account.remarks[0].count, 4U);
}

/// A line is read where any piece of it was; its mere line end is none.
TEST(Account, APieceThatWasReadMakesItsLineRead) {
    constexpr Cause kNone = {RemarkKind::Unknown, "none"};
    FileAccount account;
    {
        AccountKeeper keeper(&account, nullptr, nullptr);
        keeper.PieceBegins({.text = "nonsense", .number = 1});
        keeper.Skip(kNone);
        keeper.PieceBegins({.text = "\n", .number = 1, .continues = true});
        keeper.PieceBegins({.text = "nonsense", .number = 2});
        keeper.Skip(kNone);
        keeper.PieceBegins({.text = "record\n", .number = 2, .continues = true});
        keeper.PieceBegins({.text = " \t\r\n", .number = 3});
        keeper.Skip(kNone);
    }
    EXPECT_EQ(account.lines, 3U);
    EXPECT_EQ(account.skipped, 1U);
}

/// Cancels after the first block.
class Canceller : public CConvListener {
public:
    bool Progress(std::uint64_t read) override {
        last = read;
        return read <= 65536;
    }
    std::uint64_t last = 0;
};

TEST(ConvertFile, CanBeCancelledAndKeepsWhatWasWritten) {
    std::string bytes;
    for (int i = 0; i < 4000; ++i)
        bytes += "11" + std::to_string(10000 + i) + "+00000001 21.322+03496940 22.322+09364360\n";
    memory::FieldBook book;
    Canceller canceller;
    ConversionReport report;
    EXPECT_FALSE(ConvertFile({.file = "big.gsi",
                              .source = ByteSource::Memory(bytes),
                              .format = "gsi",
                              .fieldBook = &book,
                              .listener = &canceller},
                             report));
    EXPECT_EQ(report.problem, "cancelled");
    EXPECT_EQ(canceller.last, 131072U);
    EXPECT_GT(book.GetPunArSize(0, 0), 1000);
    EXPECT_LT(book.GetPunArSize(0, 0), 1400);
}

} // namespace
} // namespace convfile::test
