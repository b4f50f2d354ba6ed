// The format of a file found by what is in it.

#include "app/FileConversion.h"
#include "entry/ConvertFile.h"
#include "entry/FormatTable.h"
#include "memory/FieldBook.h"
#include "tests/support/Convert.h"
#include "tests/support/Files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>

namespace convfile::test {
namespace {

using testing::HasSubstr;

/// The format that is found for bytes of that name; what the problem is where none is.
std::string FoundFor(const std::string& name, std::string_view bytes, bool complete = false) {
    views::Conversion conversion;
    const views::Route route = {.complete = complete};
    app::Convert(route, name, conversion, ByteSource::Memory(bytes));
    return conversion.converted ? conversion.account.format : conversion.problem;
}

/// Formats that have records in common, and cannot be told apart by those.
std::string Family(const std::string& format) {
    return format == "foif" ? "gt7" : format;
}

/// Reference files are small, and many of them nothing but the odd case that they are named after:
/// the ordinary ones, a day of work each, are to be found without their extension.
TEST(Detection, FindsADayOfWorkOfEveryFormat) {
    std::map<std::string, int> days;
    for (const Golden& golden : GoldenFiles()) {
        const Format& format = *FormatByName(golden.format);
        if (golden.file.stem() != "day" || format.kind == FormatKind::Database)
            continue;
        ++days[golden.format];
        EXPECT_EQ(Family(FoundFor("-", ReadBytes(golden.file))), Family(golden.format))
            << golden.file;
    }
    EXPECT_GT(days.size(), 15U);
}

TEST(Detection, TakesNoFileThatIsNoneOfOurs) {
    std::mt19937 random(7);
    std::string noise(1024UL * 1024, '\0');
    for (char& c : noise)
        c = static_cast<char>(random());
    const std::string jpeg = "\xFF\xD8\xFF\xE0" + noise;
    const std::string elf = std::string("\x7F"
                                        "ELF\x02\x01\x01\0\0\0\0\0",
                                        12) +
                            noise;
    std::string coordinates;
    std::string coordinateColumns;
    for (int i = 0; i < 50; ++i) {
        const std::string n = std::to_string(i);
        coordinates += n + ",5000." + n + ",1000." + n + ",100.5,PALO\n";
        coordinateColumns += n + " 5000." + n + " 1000." + n + " 100.5 PALO\n";
    }
    const std::map<std::string, std::string> others = {
        {"empty", ""},
        {"blank lines", "\n\n \n\r\n"},
        {"picture", jpeg},
        {"program", elf},
        {"prose",
         "It was the best of times,\nit was the worst of times,\nit was the age of wisdom,\n"
         "it was the age of foolishness, 1859.\n"},
        {"coordinates", coordinates},
        {"coordinates in columns", coordinateColumns},
        {"a word", "convfile\n"},
        {"markup", "<?xml version=\"1.0\"?>\n<LandXML version=\"1.2\">\n <Units/>\n</LandXML>\n"},
        {"json", "{\n  \"name\": \"x\",\n  \"values\": [1, 2, 3.5]\n}\n"},
        {"source", "#include <stdio.h>\nint main(void) {\n    return 0;\n}\n"},
    };
    for (const auto& [what, bytes] : others) {
        EXPECT_THAT(FoundFor("-", bytes), HasSubstr("no format fits")) << what;
        if (what != "blank lines") {
            EXPECT_THAT(FoundFor("x.mts", bytes), HasSubstr("no format fits")) << what;
            EXPECT_THAT(FoundFor("x.raw", bytes), HasSubstr("no format fits")) << what;
        }
    }
}

constexpr std::string_view kGsi =
    "110001+00000001 21.322+12345670 22.322+09876540 31..00+00025417\n"
    "110002+00000002 21.322+13345670 22.322+09776540 31..00+00035417\n";

/// What was named is read as told, with a remark where something else fits far better.
TEST(Detection, ReadsAsToldAndSaysSo) {
    for (const bool byOption : {false, true}) {
        views::Conversion told;
        views::Route route;
        route.format = byOption ? "raw" : "";
        app::Convert(route, "x.raw", told, ByteSource::Memory(kGsi));
        EXPECT_TRUE(told.converted);
        EXPECT_EQ(told.account.format, "raw");
        EXPECT_TRUE(std::ranges::any_of(told.account.remarks, [](const Remark& remark) {
            return remark.kind == RemarkKind::OtherFormat &&
                   remark.text.find("gsi") != std::string::npos;
        }));
    }
    views::Conversion picture;
    app::Convert({.format = "mts"}, "x.mts", picture,
                 ByteSource::Memory("\xFF\xD8\xFF\xE0 picture"));
    EXPECT_TRUE(picture.converted) << "an option reads any file";
}

/// Lines that end in CR alone are one line to the classic reading, and no format fits.
TEST(Detection, PointsToTheCompleteReading) {
    std::string bytes(kGsi);
    std::ranges::replace(bytes, '\n', '\r');
    EXPECT_THAT(FoundFor("-", bytes), HasSubstr("try --complete"));
    EXPECT_THAT(FoundFor("x.gsi", bytes), HasSubstr("try --complete"));
    EXPECT_EQ(FoundFor("-", bytes, true), "gsi");
}

/// A header that fills the first look hides no format.
TEST(Detection, LooksFurtherThanALongHeader) {
    std::string bytes;
    for (int i = 0; i < 200; ++i)
        bytes += "!a comment of the instrument, number " + std::to_string(i) + "\n";
    EXPECT_EQ(FoundFor("-", bytes + std::string(kGsi)), "gsi");
}

} // namespace
} // namespace convfile::test
