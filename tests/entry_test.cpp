// The two entry functions: which converter serves what, and what they leave untouched.

#include "entry/ConvEntry.h"
#include "entry/FormatTable.h"
#include "memory/CadastralDocument.h"
#include "memory/FieldBook.h"
#include "memory/LinkTimeHost.h"
#include "memory/PointLibrary.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <set>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace convfile::test {
namespace {

class EntryTest : public testing::Test {
protected:
    bool ByCode(const std::string& file, int code, bool confirmed = true) {
        memory::AnswerDialogs({confirmed, file, code});
        return FConvFileNoTopcon(book_, document_, true);
    }
    bool ByExtension(const std::string& file, bool confirmed = true) {
        memory::AnswerDialogs({confirmed, file, 0});
        return FConvFileDaStrum(book_, 7, pointLibrary_, drawing_);
    }
    bool NothingTouched() {
        return book_.GetJobArSize() == 0 && memory::TakeMessages().empty() && log_.empty();
    }

    TempFolder folder_;
    memory::FieldBook book_;
    memory::CadastralDocument document_;
    memory::NotificationLog log_;
    memory::PointLibrary pointLibrary_{log_};
    memory::DrawingEngine drawing_{log_};
};

TEST_F(EntryTest, PassesOnWhatTheDialogsNeed) {
    memory::TakeDialogCall();
    ByCode("", 0, false);
    const memory::DialogCall byCode = memory::TakeDialogCall();
    EXPECT_EQ(byCode.count, 1);
    EXPECT_EQ(byCode.formatCodeBefore, 0);
    EXPECT_TRUE(byCode.option);
    ByExtension("", false);
    EXPECT_EQ(memory::TakeDialogCall().dialogMode, 7);
}

TEST_F(EntryTest, CancelledOrNamelessTouchesNothing) {
    const std::string file = folder_.Write("site.gsi", "110001+00000001 21.322+00100000\n");
    EXPECT_FALSE(ByCode(file, 1, false));
    EXPECT_FALSE(ByCode("", 1));
    EXPECT_FALSE(ByExtension(file, false));
    EXPECT_FALSE(ByExtension(""));
    EXPECT_TRUE(NothingTouched());
}

TEST_F(EntryTest, CodesAndExtensionsWithoutConverterTouchNothing) {
    memory::TakeDialogCall();
    const std::string file = folder_.Write("site.txt", "STN 1,1.5,\n");
    const std::vector<int> codes = {-1, 0, 2, 7, 10, 11, 12, 17, 25, 27, 28, 30, 1000000};
    const std::vector<const char*> names = {"site.txt", "site.scr", "site", "site.", "site.gsi"};
    for (const int code : codes)
        EXPECT_FALSE(ByCode(file, code)) << code;
    for (const char* const name : names)
        EXPECT_FALSE(ByExtension(folder_.Write(name, "STN 1,1.5,\n"))) << name;
    EXPECT_TRUE(NothingTouched());
    EXPECT_EQ(memory::TakeDialogCall().count, static_cast<int>(codes.size() + names.size()))
        << "the dialog is asked first";
}

TEST_F(EntryTest, ReturnsWhatTheConverterReturns) {
    EXPECT_FALSE(ByCode(folder_.Path("missing.gsi"), 1));
    EXPECT_TRUE(NothingTouched());
    EXPECT_TRUE(ByCode(folder_.Write("empty.gsi", ""), 1));
    EXPECT_EQ(book_.GetJobArSize(), 1);
}

/// Before any header or station of its own a cadastral file goes on with what is there first.
TEST_F(EntryTest, CadastralRecordsGoIntoTheFirstStationThatIsThere) {
    for (const char* name : {"1.txt", "2.txt"}) {
        const std::string stations = "S1,1.5,1.6,1,10,100,50,,\nS2,1.5,1.6,2,10,100,50,,\n";
        EXPECT_TRUE(ByCode(folder_.Write(name, stations), 13));
    }
    EXPECT_TRUE(ByCode(folder_.Write("3.pcp", "\x14"
                                              "2|101||50|10|\n\x14"
                                              "1|S3||\n\n"),
                       20));
    EXPECT_EQ(book_.GetPunArSize(0, 0), 2);
    EXPECT_EQ(book_.GetStaArSize(0), 3);
}

#if defined(_WIN32)

/// As a host finds it that loads the library by its name.
TEST(Library, HasItsFunctionsByNameAndItsTextsByNumber) {
    const HMODULE library = GetModuleHandleA("convfile.dll");
    ASSERT_NE(library, nullptr);
    const auto function = [&](const char* name) {
        return reinterpret_cast<void*>(GetProcAddress(library, name));
    };
    EXPECT_EQ(function("FConvFileNoTopcon"), reinterpret_cast<void*>(&FConvFileNoTopcon));
    EXPECT_EQ(function("FConvFileDaStrum"), reinterpret_cast<void*>(&FConvFileDaStrum));
    const auto text = [&](UINT id) { // as bytes of the system's code page
        char bytes[1024] = "";
        LoadStringA(library, id, bytes, sizeof bytes);
        return std::string(bytes);
    };
    EXPECT_EQ(text(20001), "Import File");
    EXPECT_EQ(text(20006), "Convertito da coordinate");
    EXPECT_NE(text(20011).find(" poich\xE8 erano in formato coordinate.\n\nSi \xE8 "),
              std::string::npos);
    for (const UINT absent : {20000U, 20002U, 20012U})
        EXPECT_EQ(text(absent), "");
}

#endif

TEST(FormatTable, NamesCodesAndExtensionsAreUnambiguous) {
    std::set<std::string> names;
    std::set<int> codes;
    std::set<std::string> extensions;
    std::set<std::string> downloads;
    const auto addWords = [](std::set<std::string>& words, std::string list) {
        std::istringstream stream(list);
        for (std::string word; stream >> word;)
            EXPECT_TRUE(words.insert(word).second) << word;
    };
    for (const Format& format : Formats()) {
        EXPECT_TRUE(names.insert(std::string(format.name)).second) << format.name;
        EXPECT_TRUE(format.code == 0 || codes.insert(format.code).second) << format.code;
        EXPECT_TRUE(format.code != 0 || !format.downloadExtensions.empty() ||
                    !format.extensions.empty())
            << format.name;
        if (format.name != "sdr33") // it shares the extension of its forerunner
            addWords(extensions, std::string(format.extensions));
        addWords(downloads, std::string(format.downloadExtensions));
        EXPECT_FALSE(format.title.empty()) << format.name;
        EXPECT_EQ(FormatByName(format.name), &format);
    }
    EXPECT_EQ(FormatByCode(0), nullptr);
    EXPECT_EQ(FormatByExtension(""), nullptr);
    EXPECT_EQ(FormatByExtension("SDR"), FormatByName("sdr2"));
    EXPECT_EQ(FormatByDownloadExtension(""), nullptr);
}

} // namespace
} // namespace convfile::test
