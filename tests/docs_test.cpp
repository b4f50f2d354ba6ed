// docs/formats.md stays true: each of its samples is converted and must give what stands under it,
// and each format has a sample. Where the head of a converter's source shows a whole file, it is
// that of the page. The samples of docs/outputs.md, and its pictures, are what the program makes.

#include "entry/FormatTable.h"
#include "routines/CodePage.h"
#include "tests/support/Convert.h"
#include "tests/support/Files.h"
#include "views/Output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <utility>

namespace convfile::test {
namespace {

/// A fenced block of the page: the words behind its fence, and its lines.
struct Block {
    std::vector<std::string> words;
    std::vector<std::string> lines;
};

std::vector<Block> BlocksOf(const std::string& page) {
    std::vector<Block> blocks;
    bool inside = false;
    std::istringstream stream(page);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with("```")) {
            inside = !inside;
            if (!inside)
                continue;
            Block& block = blocks.emplace_back();
            std::istringstream words(line.substr(3));
            for (std::string word; words >> word;)
                block.words.push_back(word);
        } else if (inside) {
            blocks.back().lines.push_back(line);
        }
    }
    return blocks;
}

/// True where one of the words behind the file's name is that.
bool Says(const Block& block, std::string_view word) {
    return block.words.size() > 3 && block.words[3] == word;
}

std::string Replaced(std::string text, std::string_view shown, char meant) {
    for (std::size_t i = text.find(shown); i != std::string_view::npos; i = text.find(shown, i))
        text.replace(i, shown.size(), 1, meant);
    return text;
}

/// The bytes of a sample: its lines with CR LF, signs for what cannot be seen put back; or what its
/// hexadecimal digits say.
std::string BytesOf(const Block& block) {
    std::string bytes;
    const bool isHex = Says(block, "hex");
    for (std::string line : block.lines) {
        if (isHex) {
            std::istringstream digits(line);
            for (unsigned byte = 0; digits >> std::hex >> byte;)
                bytes += static_cast<char>(byte);
            continue;
        }
        line = Replaced(line, "\u21E5", '\t');
        line = Replaced(line, "\u2420", ' ');
        line = Replaced(line, "\u241D", '\x1D');
        line = Replaced(line, "\u2414", '\x14');
        bytes += Windows1252FromUtf8(line) + "\r\n";
    }
    return bytes;
}

/// What the program makes of a file.
std::string ViewOf(std::string_view view, const std::string& format, const std::string& path,
                   Rules rules = Rules::Classic) {
    views::Conversion conversion;
    ConvertAs(format, path, conversion, rules);
    std::ostringstream text;
    views::Sink sink(text);
    const auto output = views::MakeOutput(view, sink, 1);
    output->Add(conversion);
    output->End();
    sink.Flush();
    return text.str();
}

std::string TextOf(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

/// The sample in the comment at the head of a source: its indented lines, as far as they go.
std::vector<std::string> SampleAtHead(const std::string& source) {
    constexpr std::string_view kIndented = "//  ";
    std::vector<std::string> lines;
    std::istringstream stream(source);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(kIndented))
            lines.push_back(line.substr(line.find_first_not_of(' ', kIndented.size())));
        else if (!lines.empty())
            break;
    }
    return lines;
}

std::string TableOf(const std::string& format, const std::string& path, Rules rules) {
    return ViewOf(views::kTable, format, path, rules);
}

/// The remarks that the program prints under a file's first line.
std::string RemarksOf(const std::string& format, const std::string& path, Rules rules) {
    const std::string table = TableOf(format, path, rules);
    const std::size_t begin = table.find('\n') + 1;
    return table.substr(begin, table.find("\n\n") + 1 - begin);
}

/// What is done with a sample on the page, by the word behind its fence.
using Printed = std::string (*)(const std::string& format, const std::string& path, Rules rules);
const std::map<std::string, Printed> kSamples = {{"sample", TableOf}, {"remarked", RemarksOf}};

TEST(Docs, SamplesGiveWhatStandsUnderThem) {
    const TempFolder folder;
    const std::vector<Block> blocks = BlocksOf(ReadBytes(CONVFILE_FORMATS_PAGE));
    std::set<std::string_view> shown;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        if (blocks[i].words.empty() || !kSamples.contains(blocks[i].words[0]))
            continue;
        const Printed printed = kSamples.at(blocks[i].words[0]);
        ASSERT_GE(blocks[i].words.size(), 3U);
        const std::string& format = blocks[i].words[1];
        shown.insert(format);
        ASSERT_LT(i + 1, blocks.size());
        const std::string path = folder.Write(blocks[i].words[2], BytesOf(blocks[i]));
        const Rules rules = Says(blocks[i], "complete") ? Rules::Complete : Rules::Classic;
        EXPECT_EQ(printed(format, path, rules), TextOf(blocks[i + 1].lines)) << format;
    }
    for (const Format& format : Formats()) {
        if (format.kind != FormatKind::Database) { // a database cannot be printed
            EXPECT_TRUE(shown.contains(format.name)) << format.name << " has no sample";
        }
    }
}

TEST(Docs, ViewsAreWhatThePageShows) {
    const TempFolder folder;
    const std::filesystem::path docs = std::filesystem::path(CONVFILE_PROJECT_FOLDER) / "docs";
    const std::vector<Block> blocks = BlocksOf(ReadBytes(docs / "outputs.md"));
    ASSERT_GE(blocks.size(), 5U);
    const Block& sample = blocks[0];
    ASSERT_EQ(sample.words.size(), 3U);
    const std::string path = folder.Write(sample.words[2], BytesOf(sample));
    for (const Block& block : blocks) {
        if (block.words.size() != 2)
            continue;
        std::string made = ViewOf(block.words[1], sample.words[1], path);
        std::erase(made, '\r');
        if (block.words[0] == "gives")
            EXPECT_EQ(made, TextOf(block.lines));
        else
            EXPECT_THAT(made, testing::HasSubstr(TextOf(block.lines)));
    }
}

TEST(Docs, PicturesAreOfTheSamples) {
    const std::filesystem::path project(CONVFILE_PROJECT_FOLDER);
    for (const std::string name : {"farm", "day"}) {
        const auto sample = (project / "samples" / (name + ".gsi")).string();
        EXPECT_EQ(ViewOf("svg", "gsi", sample),
                  ReadBytes(project / "docs/pictures" / (name + ".svg")))
            << "convfile --to svg -o docs/pictures/" << name << ".svg " << sample;
    }
}

TEST(Docs, SamplesAtTheHeadsOfSourcesAreThoseOfThePage) {
    const std::filesystem::path project(CONVFILE_PROJECT_FOLDER);
    const std::vector<Block> blocks = BlocksOf(ReadBytes(CONVFILE_FORMATS_PAGE));
    const std::pair<const char*, const char*> sources[] = {
        {"gsi", "converters/ConvFileGSI.cpp"},
        {"pentax-ats100", "converters/ConvFilePentaxATS100.cpp"},
    };
    for (const auto& [format, source] : sources) {
        const auto isSample = [name = format](const Block& block) {
            return block.words.size() > 1 && block.words[0] == "sample" && block.words[1] == name;
        };
        const auto sample = std::ranges::find_if(blocks, isSample);
        ASSERT_NE(sample, blocks.end()) << format;
        EXPECT_EQ(SampleAtHead(ReadBytes(project / source)), sample->lines) << source;
    }
}

} // namespace
} // namespace convfile::test
