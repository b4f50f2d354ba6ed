// Every file below golden/ must give the field book that lies beside it.
//
// CONVFILE_UPDATE_GOLDEN=1 in the environment rewrites the expectations; the test then still fails
// and shows what changed, so that the change is looked at before it is kept.

#include "entry/FormatTable.h"
#include "tests/support/Convert.h"
#include "tests/support/Files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <sstream>

namespace convfile::test {
namespace {

/// The lines in which two texts differ first, for a message of bearable length.
std::string FirstDifference(const std::string& expected, const std::string& actual) {
    std::istringstream expectedLines(expected);
    std::istringstream actualLines(actual);
    std::string before;
    std::string e;
    std::string a;
    for (int line = 1;; ++line) {
        const bool moreExpected = static_cast<bool>(std::getline(expectedLines, e));
        const bool moreActual = static_cast<bool>(std::getline(actualLines, a));
        if (!moreExpected && !moreActual)
            return {};
        if (!moreExpected || !moreActual || e != a) {
            return "line " + std::to_string(line) + ", after: " + before +
                   "\n  expected: " + (moreExpected ? e : "(end)") +
                   "\n  given:    " + (moreActual ? a : "(end)");
        }
        before = e;
    }
}

void ExpectFieldBook(const Golden& golden, const std::filesystem::path& json, Rules rules) {
    const std::string expected = ReadBytes(json);
    const std::string actual = ConvertToJson(golden.format, golden.Path(), rules);
    EXPECT_EQ(FirstDifference(expected, actual), "") << json;
    if (std::getenv("CONVFILE_UPDATE_GOLDEN") && expected != actual)
        WriteBytes(json, actual);
}

TEST(Golden, EveryFileGivesItsFieldBook) {
    for (const Golden& golden : GoldenFiles())
        ExpectFieldBook(golden, golden.json, Rules::Classic);
}

/// Beside a file that --complete reads otherwise lies NAME.complete.json.
TEST(Golden, CompleteReadingGivesItsFieldBook) {
    for (const Golden& golden : GoldenFiles()) {
        if (!golden.completeJson.empty())
            ExpectFieldBook(golden, golden.completeJson, Rules::Complete);
    }
}

TEST(Golden, EveryFormatHasFilesAndEveryFolderAFormat) {
    std::set<std::string> folders;
    for (const Golden& golden : GoldenFiles())
        folders.insert(golden.format);
    std::set<std::string> formats;
    for (const Format& format : Formats()) {
        if (CanConvert(format))
            formats.insert(std::string(format.name));
    }
    EXPECT_EQ(folders, formats);
}

} // namespace
} // namespace convfile::test
