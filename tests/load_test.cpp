// The DLL as a host finds it: loaded by name, its functions by theirs, nothing of it linked in.
// What it is handed is implemented in the program.

#include "entry/ConvEntry.h"
#include "memory/CadastralDocument.h"
#include "memory/FieldBook.h"
#include "memory/LinkTimeHost.h"
#include "memory/PointLibrary.h"
#include "tests/support/Files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

namespace convfile::test {
namespace {

class LoadTest : public testing::Test {
protected:
    LoadTest() : library_(LoadLibraryA("convfile.dll")) {}
    ~LoadTest() override { FreeLibrary(library_); }

    template <typename Function>
    Function* Find(const char* name) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library_, name)));
    }
    /// The text of the library's string table, as bytes of the system's code page.
    std::string Text(UINT id) const {
        char text[1024] = "";
        LoadStringA(library_, id, text, sizeof text);
        return text;
    }

    HMODULE library_;
    TempFolder folder_;
    memory::FieldBook book_;
};

TEST_F(LoadTest, ConvertsThroughBothEntryFunctions) {
    ASSERT_NE(library_, nullptr);
    auto* const byCode = Find<decltype(FConvFileNoTopcon)>("FConvFileNoTopcon");
    auto* const byExtension = Find<decltype(FConvFileDaStrum)>("FConvFileDaStrum");
    ASSERT_NE(byCode, nullptr);
    ASSERT_NE(byExtension, nullptr);

    memory::CadastralDocument document;
    const std::string gsi =
        folder_.Write("a.x", "110001+000000P1 21.322+10000000 32..00+00010000 33..00+00000000\n");
    memory::AnswerDialogs({.confirmed = true, .fileName = gsi, .formatCode = 1});
    EXPECT_TRUE(byCode(book_, document, true));
    ASSERT_EQ(book_.GetPunArSize(0, 0), 1);
    EXPECT_EQ(book_.GetPunAt(0, 0, 0)->GetNome(), "P1");
    EXPECT_EQ(book_.GetPunAt(0, 0, 0)->GetDiIn(), 10.0);
    const auto messages = memory::TakeMessages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].text, Text(20003));

    std::vector<memory::Notification> notifications;
    memory::PointLibrary points(notifications);
    memory::DrawingEngine drawing(notifications);
    const std::string gt7 = folder_.Write("b.gt7", "JOB A,\r\nJOB SITE,\r\n");
    memory::AnswerDialogs({.confirmed = true, .fileName = gt7});
    EXPECT_TRUE(byExtension(book_, 7, points, drawing));
    EXPECT_EQ(memory::TakeDialogCall().dialogMode, 7);
    EXPECT_EQ(book_.GetJobAt(book_.GetJobArSize() - 1)->GetNome(), "SITE");
}

TEST_F(LoadTest, HasItsTextsAndNoOthers) {
    EXPECT_EQ(Text(20001), "Import File");
    EXPECT_EQ(Text(20006), "Convertito da coordinate");
    EXPECT_THAT(Text(20011),
                testing::HasSubstr(" poich\xE8 erano in formato coordinate.\n\nSi \xE8 "));
    for (const UINT absent : {20000U, 20002U, 20012U})
        EXPECT_EQ(Text(absent), "");
}

} // namespace
} // namespace convfile::test
