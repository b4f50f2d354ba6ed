// The command line as scripts meet it: what goes to which stream, and with which exit status.

#include "entry/FormatTable.h"
#include "tests/support/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace convfile::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class CommandLineTest : public ProgramTest {
protected:
    std::string Gsi(const std::string& name) const {
        folder_.Write(name, kOnePoint);
        return Quoted(name);
    }

    static constexpr std::string_view kOnePoint =
        "110001+00000001 21.322+10000000 22.322+10000000 32..00+00010000 "
        "33..00+00000000 71....+0000P\xE8\x81\n";
};

TEST_F(CommandLineTest, WrongUsageIsStatusTwo) {
    for (const char* arguments :
         {"", "--to xml x.gsi", "--code x x.gsi", "--code 1 --download x.gsi", "--frmat gsi x.gsi",
          "--format nosuch x.gsi", "--format \"\" x.gsi", "formats x.gsi", "--code 1,2 x.gsi"}) {
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.status, 2) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_NE(outcome.err, "") << arguments;
    }
}

TEST_F(CommandLineTest, ListsTheFormats) {
    const Outcome outcome = Run("formats");
    EXPECT_EQ(outcome.status, 0);
    for (const Format& format : Formats())
        EXPECT_THAT(outcome.out, HasSubstr(std::string(format.name) + " "));
}

TEST_F(CommandLineTest, SaysItsVersion) {
    const Outcome outcome = Run("--version");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "convfile " CONVFILE_VERSION "\n");
    EXPECT_EQ(outcome.err, "");
}

TEST_F(CommandLineTest, ShowsPeopleATable) {
    const Outcome outcome = Run(Gsi("site.gsi"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    const std::string summary =
        "site.gsi: 1 job, 1 station, 1 point (without distance 0, without zenith angle 0, without "
        "horizontal angle 0); [Import File] I dati convertiti";
    EXPECT_THAT(outcome.out, StartsWith(summary));
    EXPECT_THAT(outcome.out, HasSubstr("Slope distance [m]"));
    EXPECT_THAT(outcome.out, HasSubstr("P\u00E8\\x81"));
    const Outcome lines = Run("--to summary " + Gsi("site.gsi") + " " + Gsi("other.gsi"));
    EXPECT_THAT(lines.out, AllOf(StartsWith(summary), HasSubstr("\nother.gsi: 1 job")));
    EXPECT_EQ(std::ranges::count(lines.out, '\n'), 2) << "one line a file, warnings and all";
}

TEST_F(CommandLineTest, PrintsOneObjectOrAnArray) {
    const Outcome one = Run("--to json " + Gsi("a.gsi"));
    EXPECT_THAT(one.out, StartsWith("{\n  \"file\": \"a.gsi\",\n  \"converted\": true,\n"));
    EXPECT_THAT(one.out, HasSubstr("\"code\": \"P\u00E8\\u0081\""));
    EXPECT_THAT(one.out, HasSubstr("\"slope_distance\": 10,"));
    const Outcome two = Run("--to json " + Gsi("a.gsi") + " " + Gsi("b.gsi"));
    EXPECT_THAT(two.out, AllOf(StartsWith("[\n{\n"), HasSubstr("},\n{\n"), EndsWith("}\n]\n")));
    EXPECT_THAT(two.out, HasSubstr("\"b.gsi\""));
}

TEST_F(CommandLineTest, MakesOneTableOfSeveralFilesAndADrawingOfOne) {
    const std::string files = Gsi("a.gsi") + " " + Quoted("missing.gsi") + " " + Gsi("b.gsi");
    const Outcome csv = Run("--to csv " + files);
    EXPECT_EQ(csv.status, 1);
    EXPECT_THAT(csv.out, AllOf(StartsWith("file,job,station,"), HasSubstr("\r\na.gsi,a.gsi,,,,1,P"),
                               HasSubstr("\r\nb.gsi,")));
    EXPECT_EQ(std::ranges::count(csv.out, '\n'), 3);
    EXPECT_EQ(std::ranges::count(Run("--to points " + files).out, '\n'), 5);
    for (const char* view : {"dxf", "svg"}) {
        const std::string to = std::string("--to ") + view + " ";
        EXPECT_EQ(Run(to + files).status, 2);
        EXPECT_EQ(Run(to + Gsi("a.gsi")).status, 0);
        folder_.Write("empty.gsi", "");
        const Outcome empty = Run("--format gsi " + to + Quoted("empty.gsi"));
        EXPECT_EQ(empty.status, 0);
        EXPECT_THAT(empty.out, HasSubstr("Nothing to draw"));
    }
}

TEST_F(CommandLineTest, GoesOnAfterAFileThatCannotBeConverted) {
    folder_.Write("site.what", "Dear Sir,\nplease find below what we spoke of.\n");
    const Outcome outcome = Run("--to jsonl " + Quoted("missing.gsi") + " " + Quoted("site.what") +
                                " " + Gsi("good.gsi"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, StartsWith("{\"file\":\"missing.gsi\",\"converted\":false,"));
    EXPECT_THAT(outcome.out, HasSubstr("{\"file\":\"good.gsi\",\"converted\":true,"));
    EXPECT_EQ(std::ranges::count(outcome.out, '\n'), 3);
    EXPECT_THAT(outcome.err, HasSubstr("missing.gsi: cannot be opened"));
    EXPECT_THAT(outcome.err, HasSubstr("site.what: no format fits"));
    EXPECT_THAT(outcome.out, HasSubstr("\"problem\":\"no format fits\""));
}

TEST_F(CommandLineTest, GoesByExtensionAndContentWhereNothingIsChosen) {
    folder_.Write("day.DAT", "JOB A,\nJOB SITE,\nSTN S1,1.500,\n");
    EXPECT_THAT(Run("--to json " + Quoted("day.DAT")).out, HasSubstr("\"name\": \"SITE\""));
    EXPECT_THAT(Run("--to json --code 8 " + Quoted("day.DAT")).out, Not(HasSubstr("\"SITE\"")));
    EXPECT_EQ(Run("--to json --format gsi " + Quoted("day.DAT")).status, 0);
    EXPECT_THAT(Run("--to summary " + Quoted("day.DAT")).out,
                HasSubstr("; read as gt7, by its content"));
    EXPECT_THAT(Run("--to summary - < " + Gsi("a.gsi")).out,
                AllOf(StartsWith("-: 1 job"), HasSubstr("; read as gsi, by its content")));
    EXPECT_THAT(Run("--to summary --format gt7 - < " + Quoted("day.DAT")).out,
                StartsWith("-: 1 job, 1 station"));
    EXPECT_THAT(Run("formats").out, HasSubstr("extension DAT: dat gt7."));
}

TEST_F(CommandLineTest, TellsHowTheFileWasRead) {
    const std::string name = folder_.Write("site.gsi", std::string(kOnePoint) + "what is this?\n");
    const std::string remark = "unknown: ";
    EXPECT_THAT(Run("--to summary \"" + name + "\"").out, HasSubstr("\n" + remark));
    EXPECT_THAT(Run("--to json \"" + name + "\"").out,
                HasSubstr("  \"format\": \"gsi\",\n  \"account\": {\n    \"lines\": 2,\n    "
                          "\"read\": 1,\n    \"skipped\": 1,\n"));
    EXPECT_THAT(Run("--to jsonl \"" + name + "\"").out,
                HasSubstr("\"points\":[{\"name\":\"1\",\"line\":1,"));
}

TEST_F(CommandLineTest, SaysWhatHasNoConverter) {
    EXPECT_THAT(Run("--code 2 " + Gsi("a.gsi")).err, HasSubstr("format code 2 has no converter"));
    EXPECT_THAT(Run("--code -7 " + Gsi("a.gsi")).err, HasSubstr("format code -7 has no converter"));
    EXPECT_THAT(Run("--code 010 " + Gsi("a.gsi")).err, HasSubstr("format code 10 has no"));
    EXPECT_THAT(Run("--code 99999999999 " + Gsi("a.gsi")).err, HasSubstr("has no converter"));
    const Outcome download = Run("--download " + Gsi("a.gsi"));
    EXPECT_EQ(download.status, 1);
    EXPECT_THAT(download.err, HasSubstr("a.gsi: its extension is none of"));
}

TEST_F(CommandLineTest, TakesNamesAsTheyAre) {
    EXPECT_EQ(Run("--to summary " + Gsi("[a,b].gsi")).status, 0);
    Gsi("formats");
    std::filesystem::current_path(folder_.Path("."));
    EXPECT_THAT(Run("--code +1 [a,b].gsi").out, StartsWith("[a,b].gsi: 1 job"));
    EXPECT_THAT(Run("--code 1 --to jsonl formats").out, StartsWith("{\"file\":\"formats\",\"conv"));
    EXPECT_EQ(Run("-o ./none.gsi none.gsi").status, 2) << "the same file by another path";
    std::filesystem::current_path("/");
#if defined(_WIN32)
    const std::string accented = folder_.Path("") + "caff\xE8.gsi"; // in the system's code page
    std::ofstream(accented, std::ios::binary) << kOnePoint;
    EXPECT_THAT(Run("--to summary -o " + Quoted("x") + " \"" + accented + "\"").err, "");
    EXPECT_THAT(ReadBytes(folder_.Path("x")), StartsWith("caff\u00E8.gsi: 1 job"));
    EXPECT_EQ(std::remove(accented.c_str()), 0);
#else
    const Outcome coloured = Run("--to summary " + Quoted("\x1B[31mred.gsi"));
    EXPECT_THAT(coloured.out + coloured.err, Not(HasSubstr("\x1B"))) << "no steering of terminals";
#endif
}

TEST_F(CommandLineTest, PrintsIntoAFile) {
    const Outcome outcome = Run("--to jsonl -o " + Quoted("out.jsonl") + " " + Gsi("a.gsi"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(ReadBytes(folder_.Path("out.jsonl")), StartsWith("{\"file\":\"a.gsi\""));
    const std::string before = ReadBytes(folder_.Path("a.gsi"));
    EXPECT_EQ(Run("-o " + Quoted("a.gsi") + " " + Quoted("a.gsi")).status, 2);
    EXPECT_EQ(ReadBytes(folder_.Path("a.gsi")), before) << "never over its own input";
    EXPECT_EQ(Run("-o " + Quoted("none.gsi") + " " + Quoted("none.gsi")).status, 2);
    EXPECT_FALSE(std::filesystem::exists(folder_.Path("none.gsi"))) << "nor made where it misses";
    EXPECT_EQ(Run("-o " + Quoted("no/such/folder") + " " + Quoted("a.gsi")).status, 1);
#if !defined(_WIN32)
    if (std::filesystem::exists("/dev/full")) {
        const Outcome full = Run("-o /dev/full " + Quoted("a.gsi"));
        EXPECT_EQ(full.status, 1);
        EXPECT_THAT(full.err, HasSubstr("could not be written"));
    }
#endif
}

} // namespace
} // namespace convfile::test
