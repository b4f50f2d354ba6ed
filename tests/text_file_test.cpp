// The one text-file reader: what it delivers is what the Windows text mode delivers.

#include "routines/TextFile.h"
#include "tests/support/Files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace convfile::test {
namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;

std::vector<std::string> LinesOf(std::string_view bytes) {
    const TempFolder folder;
    TextFile file;
    EXPECT_TRUE(file.Open(folder.Write("lines.txt", bytes)));
    std::vector<std::string> lines;
    std::string_view line;
    while (file.ReadLine(line))
        lines.emplace_back(line);
    return lines;
}

TEST(TextFile, DropsACarriageReturnBeforeALineFeedOnly) {
    EXPECT_THAT(LinesOf("a\r\nb\rc\nd\r\r\n\r"), ElementsAre("a\n", "b\rc\n", "d\r\n", "\r"));
    EXPECT_THAT(LinesOf(""), ElementsAre());
    EXPECT_THAT(LinesOf("\n\nx"), ElementsAre("\n", "\n", "x"));
}

TEST(TextFile, PiecesAreCountedAfterTranslation) {
    const std::string x253(253, 'x');
    const std::string x254(254, 'x');
    EXPECT_THAT(LinesOf(x253 + "\r\ny\n"), ElementsAre(x253 + "\n", "y\n"));
    EXPECT_THAT(LinesOf(x254 + "\r\ny\n"), ElementsAre(x254, "\n", "y\n"));
    EXPECT_THAT(LinesOf(x253 + "\r\r\ny\n"), ElementsAre(x253 + "\r", "\n", "y\n"));
    EXPECT_THAT(LinesOf(x254 + x254 + "z"), ElementsAre(x254, x254, "z"));
}

/// Line ends, Ctrl-Z and NUL on every side of the borders between the blocks that are read.
TEST(TextFile, DeliversTheSameAcrossItsBlocks) {
    constexpr std::size_t kBlock = 64UL * 1024;
    for (std::size_t shift = 0; shift < 4; ++shift) {
        std::string bytes(kBlock - 2 + shift, 'a');
        for (std::size_t i = 99; i < bytes.size(); i += 100)
            bytes[i] = '\n';
        bytes[bytes.size() - 1] = 'b';
        std::string expected = bytes + "\nend\n";
        std::string all;
        for (const std::string& line : LinesOf(bytes + "\r\nend\r\n"))
            all += line;
        EXPECT_EQ(all, expected) << shift;
        EXPECT_EQ(LinesOf(bytes + "\r").back().back(), '\r') << shift;
        const std::string last = bytes.substr(bytes.rfind('\n') + 1);
        EXPECT_EQ(LinesOf(bytes + "\x1Alost\n").back(), last) << shift;
        EXPECT_THAT(LinesOf(bytes + std::string("\0lost\nend\n", 10)),
                    IsSupersetOf({last, std::string("end\n")}))
            << shift;
    }
}

TEST(TextFile, CharactersCanBeSteppedBackOver) {
    const TempFolder folder;
    const std::string bytes = std::string(64UL * 1024, 'a') + "\r\nb";
    TextFile file;
    ASSERT_TRUE(file.Open(folder.Write("chars.txt", bytes)));
    std::string read;
    for (int c = file.ReadChar(); c != TextFile::kEnd; c = file.ReadChar()) {
        file.StepBack();
        EXPECT_EQ(file.ReadChar(), c);
        read += static_cast<char>(c);
    }
    EXPECT_EQ(read, std::string(64UL * 1024, 'a') + "\nb");
}

TEST(TextFile, DoesNotOpenAFolderOrNothing) {
    const TempFolder folder;
    TextFile file;
    EXPECT_FALSE(file.Open(""));
    EXPECT_FALSE(file.Open(folder.Path(".")));
    EXPECT_FALSE(file.Open(folder.Path("missing")));
    std::string_view line;
    EXPECT_FALSE(file.ReadLine(line));
}

TEST(TextFile, ReadsFromMemoryAndFromAStreamWhereItStands) {
    std::string_view line;
    TextFile file;
    const std::string_view bytes = "a\r\nb";
    ASSERT_TRUE(file.Open("name only", ByteSource::Memory(bytes)));
    EXPECT_TRUE(file.ReadLine(line) && line == "a\n");
    EXPECT_TRUE(file.ReadLine(line) && line == "b");
    EXPECT_FALSE(file.ReadLine(line));
    EXPECT_FALSE(file.Open("", ByteSource::Memory(bytes)));
    ASSERT_TRUE(file.Open("nothing", ByteSource::Memory({})));
    EXPECT_FALSE(file.ReadLine(line));

    std::FILE* const stream = std::tmpfile();
    ASSERT_NE(stream, nullptr);
    std::fputs("skipped\nread\n", stream);
    ASSERT_EQ(std::fseek(stream, 8, SEEK_SET), 0);
    ASSERT_TRUE(file.Open("stream", ByteSource::Stream(stream)));
    EXPECT_TRUE(file.ReadLine(line) && line == "read\n");
    ASSERT_TRUE(file.Open("memory again", ByteSource::Memory("b")));
    EXPECT_TRUE(file.ReadLine(line) && line == "b");
    EXPECT_EQ(std::fclose(stream), 0) << "it is not the reader's to close";
}

} // namespace
} // namespace convfile::test
