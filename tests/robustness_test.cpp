// What holds for every format whatever its file: written over the reference files, so that a
// converter joins by adding its own.

#include "app/FileConversion.h"
#include "tests/support/Convert.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace convfile::test {
namespace {

using memory::Adder;

constexpr std::size_t kSmallFile = 8192;

constexpr Rules kBothRules[] = {Rules::Classic, Rules::Complete};

/// Every reference file, to be read by the classic rules and by the complete ones.
std::vector<std::pair<Golden, Rules>> BothReadings() {
    std::vector<std::pair<Golden, Rules>> readings;
    for (const Golden& golden : GoldenFiles()) {
        for (const Rules rules : kBothRules)
            readings.emplace_back(golden, rules);
    }
    return readings;
}

std::string ReplaceAll(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t i = text.find(from); i != std::string_view::npos;
         i = text.find(from, i + to.size()))
        text.replace(i, from.size(), to);
    return text;
}

/// Line ends can only be told in a text: no NUL, no CR that stands elsewhere.
bool HasPlainLineEnds(const std::string& bytes) {
    const std::string withoutLineEnds = ReplaceAll(bytes, "\r\n", "");
    return bytes.find('\0') == std::string_view::npos &&
           withoutLineEnds.find('\r') == std::string_view::npos;
}

TEST(EveryFormat, TakesBothLineEnds) {
    for (const auto& [golden, rules] : BothReadings()) {
        const std::string bytes = ReadBytes(golden.file);
        if (!HasPlainLineEnds(bytes))
            continue;
        const std::string lf = ReplaceAll(bytes, "\r\n", "\n");
        const std::string name = golden.file.filename().string();
        const std::string expected = ConvertToJson(golden.format, golden.Path(), rules);
        for (const std::string& ended : {lf, ReplaceAll(lf, "\n", "\r\n")}) {
            views::Conversion result;
            ConvertBytesAs(golden.format, name, ended, result, rules);
            EXPECT_EQ(JsonOf(result), expected) << golden.file;
        }
    }
}

/// A file cut short gives what was complete in it: all its points but the last, which the cut may
/// have changed, are those of the whole file. (By name: their values may hang on a later UNITS.)
void ExpectWhatWasComplete(const views::Conversion& cut, const std::vector<std::string>& whole) {
    std::vector<std::string> points = PointNames(cut.fieldBook);
    if (!points.empty())
        points.pop_back();
    ASSERT_TRUE(cut.converted);
    ASSERT_LE(points.size(), whole.size());
    const auto differs = std::ranges::mismatch(points, whole).in1;
    ASSERT_TRUE(differs == points.end()) << *differs;
}

/// Every line is read or skipped, remarks keep to their form, and no record is of a line that is
/// not there.
void ExpectAddsUp(const views::Conversion& conversion) {
    const FileAccount& account = conversion.account;
    ASSERT_EQ(account.lines, account.read + account.skipped);
    ASSERT_LE(account.remarks.size(), 32U);
    for (const Remark& remark : account.remarks) {
        ASSERT_LE(remark.lines.size(), std::min<std::uint64_t>(remark.count, 20));
        ASSERT_TRUE(std::ranges::is_sorted(remark.lines, std::less_equal<>()));
        ASSERT_TRUE(remark.lines.empty() || remark.lastLine <= account.lines) << remark.text;
    }
    ForEachRecordLine(conversion, [&](const char* kind, std::uint64_t line) {
        ASSERT_LE(line, account.lines) << kind;
    });
}

/// By both readings where they differ, else in turns.
TEST(EveryFormat, CutAtEveryByteKeepsWhatWasCompleteAndAddsUp) {
    for (const Golden& golden : GoldenFiles()) {
        const std::string bytes = ReadBytes(golden.file);
        const std::string name = golden.file.filename().string();
        std::array<std::vector<std::string>, 2> points;
        for (const Rules rules : kBothRules) {
            SCOPED_TRACE(golden.Path());
            views::Conversion whole;
            ConvertAs(golden.format, golden.Path(), whole, rules);
            ExpectAddsUp(whole);
            points.at(rules == Rules::Complete) = PointNames(whole.fieldBook);
        }
        for (std::size_t length = 0; length < bytes.size() && bytes.size() <= kSmallFile;
             ++length) {
            for (const Rules rules : kBothRules) {
                const bool complete = rules == Rules::Complete;
                if (golden.completeJson.empty() && complete == (length % 2 == 0))
                    continue;
                views::Conversion cut;
                ConvertBytesAs(golden.format, name, std::string_view(bytes).substr(0, length), cut,
                               rules);
                ExpectWhatWasComplete(cut, points.at(complete));
                ExpectAddsUp(cut);
                ASSERT_FALSE(testing::Test::HasFatalFailure())
                    << golden.file << " cut at " << length;
            }
        }
    }
}

std::size_t RecordCount(const memory::FieldBook& book, Adder adder) {
    std::array<std::size_t, 4> counts = {book.Jobs().size(), 0, 0, book.OrientationPoints().size()};
    for (const auto& job : book.Jobs()) {
        counts[1] += job->stations.size();
        for (const auto& station : job->stations)
            counts[2] += station->points.size();
    }
    return counts.at(static_cast<std::size_t>(adder));
}

/// A field book that declines a kind of record, from each call on: the conversion goes on and gives
/// the same answer, and nothing of that kind is added any more.
TEST(EveryFormat, GoesOnWhereTheFieldBookDeclines) {
    constexpr Adder kAdders[] = {Adder::Job, Adder::Station, Adder::Point, Adder::OrientationPoint};
    for (const auto& [golden, rules] : BothReadings()) {
        views::Conversion whole;
        ConvertAs(golden.format, golden.Path(), whole, rules);
        for (const Adder adder : kAdders) {
            const std::size_t most = RecordCount(whole.fieldBook, adder);
            for (std::size_t call = 0; call <= std::min<std::size_t>(most, 40); ++call) {
                views::Conversion declined;
                declined.fieldBook.DeclineFrom(adder, call);
                ConvertAs(golden.format, golden.Path(), declined, rules);
                EXPECT_EQ(declined.converted, whole.converted) << golden.file;
                EXPECT_LE(RecordCount(declined.fieldBook, adder), call) << golden.file;
            }
        }
    }
}

/// Every number with decimals is a negative zero of its width.
std::string WithNegativeZeros(std::string text) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    for (std::size_t begin = 0; begin < text.size(); ++begin) {
        if (!isDigit(text[begin]))
            continue;
        std::size_t end = begin;
        while (end < text.size() && (isDigit(text[end]) || text[end] == '.'))
            ++end;
        const std::size_t point = text.find('.', begin);
        if (point > begin + 1 && point + 1 < end) {
            std::replace_if(text.begin() + static_cast<std::ptrdiff_t>(begin),
                            text.begin() + static_cast<std::ptrdiff_t>(end), isDigit, '0');
            text[begin] = '-';
        }
        begin = end;
    }
    return text;
}

TEST(EveryFormat, WritesNoNegativeZero) {
    const TempFolder folder;
    for (const auto& [golden, rules] : BothReadings()) {
        const std::string path = folder.Write(golden.file.filename().string(),
                                              WithNegativeZeros(ReadBytes(golden.file)));
        const std::string book = ConvertToJson(golden.format, path, rules);
        for (const char* const zero : {" -0,", " -0\n"})
            EXPECT_EQ(book.find(zero), std::string_view::npos) << golden.file;
    }
}

#if defined(__linux__)

/// Gives what is left, and fails where the end would be.
ssize_t ReadAndFail(void* bytes, char* buffer, std::size_t size) {
    auto& left = *static_cast<std::string_view*>(bytes);
    const std::size_t taken = left.copy(buffer, size);
    left.remove_prefix(taken);
    return taken > 0 ? static_cast<ssize_t>(taken) : -1;
}

TEST(EveryFormat, TakesAReadErrorForTheEnd) {
    for (const Golden& golden : GoldenFiles()) {
        const Format& format = *FormatByName(golden.format);
        const std::string bytes = ReadBytes(golden.file);
        for (std::size_t part = 0; part < 5 && format.kind != FormatKind::Database; ++part) {
            const std::string cut = bytes.substr(0, bytes.size() * part / 5);
            std::string_view left = cut;
            std::FILE* const stream =
                fopencookie(&left, "rb", {ReadAndFail, nullptr, nullptr, nullptr});
            views::Conversion failed;
            views::Conversion ended;
            const views::Route route{.format = golden.format, .trustsFormat = true};
            app::Convert(route, golden.Path(), failed, ByteSource::Stream(stream));
            app::Convert(route, golden.Path(), ended, ByteSource::Memory(cut));
            std::fclose(stream);
            EXPECT_EQ(JsonOf(failed), JsonOf(ended)) << golden.file;
        }
    }
}

#endif

/// A folder has no bytes to read and is not a file to convert.
TEST(EveryFormat, RefusesWhatCannotBeOpened) {
    const TempFolder folder;
    for (const Golden& golden : GoldenFiles()) {
        const std::string name = "missing" + golden.file.extension().string();
        views::Conversion missing;
        ConvertAs(golden.format, folder.Path(name), missing);
        EXPECT_FALSE(missing.converted) << golden.file;
        std::filesystem::create_directory(folder.Path(name));
        views::Conversion directory;
        ConvertAs(golden.format, folder.Path(name), directory);
        EXPECT_FALSE(directory.converted) << golden.file;
        EXPECT_EQ(directory.problem, "is a folder");
        std::filesystem::remove(folder.Path(name));
    }
}

} // namespace
} // namespace convfile::test
