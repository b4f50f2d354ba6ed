// Many files and what is written of them: that old outputs last until new ones are whole, and that
// a run says and writes the same however many files it takes at a time.

#include "app/Progress.h"
#include "tests/support/Files.h"
#include "tests/support/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <regex>
#include <string>
#include <vector>

#if !defined(_WIN32)
#include <chrono>
#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#endif

namespace convfile::test {
namespace {

namespace fs = std::filesystem;

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

std::string GsiLine(int point) {
    return "11" + std::to_string(10000 + point).substr(1) +
           "+00000001 21.322+10000000 22.322+10000000 31..00+00010000 87..10+00001500\n";
}

class ManyTest : public ProgramTest {
protected:
    std::string Gsi(const std::string& name, int points = 1) const {
        std::string text;
        for (int i = 0; i < points; ++i)
            text += GsiLine(i % 9999);
        fs::create_directories(fs::path(folder_.Path(name)).parent_path());
        folder_.Write(name, text);
        return Quoted(name);
    }
    std::string Read(const std::string& name) const { return ReadBytes(folder_.Path(name)); }

    /// The files that objects are about.
    static std::vector<std::string> NamesIn(const std::string& json) {
        static const std::regex file("\"file\": ?\"([^\"]*)\"");
        std::vector<std::string> names;
        for (std::sregex_iterator next(json.begin(), json.end(), file), end; next != end; ++next)
            names.push_back((*next)[1]);
        return names;
    }

    /// All files below a folder but what a run says, hidden ones among them.
    std::vector<std::string> Files(const std::string& below = ".") const {
        std::vector<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(folder_.Path(below))) {
            const std::string name =
                fs::relative(entry.path(), folder_.Path(below)).generic_string();
            if (!entry.is_directory() && name != "stdout" && name != "stderr")
                names.push_back(name);
        }
        std::ranges::sort(names);
        return names;
    }
};

TEST_F(ManyTest, AnOldOutputLastsUntilTheNewOneIsWhole) {
    folder_.Write("out.json", "old");
    folder_.Write("letter.txt", "");
    EXPECT_EQ(Run("--to json -o " + Quoted("out.json") + " " + Quoted("letter.txt")).status, 1);
    EXPECT_EQ(Read("out.json"), "old") << "nothing was converted";
    const std::string both = Quoted("letter.txt") + " " + Gsi("a.gsi");
    EXPECT_EQ(Run("--to jsonl -o " + Quoted("out.json") + " " + both).status, 1);
    EXPECT_THAT(Read("out.json"), AllOf(HasSubstr("{\"file\":\"letter.txt\",\"converted\":false"),
                                        HasSubstr("\n{\"file\":\"a.gsi\",\"converted\":true")));
    EXPECT_THAT(Files(), ElementsAre("a.gsi", "letter.txt", "out.json"));
}

TEST_F(ManyTest, AFolderStandsForWhatFitsBelowIt) {
    Gsi("day/b.gsi");
    WriteBytes(fs::path(folder_.Path("day")) / fs::path(u8"\u0416.gsi"), // beyond the code page
               GsiLine(0));
    Gsi("day/a/z");
    Gsi("day/a.gsi");
    Gsi("day/.hidden.gsi");
    Gsi("day/.git/x.gsi");
    folder_.Write("day/a/nothing", "");
    folder_.Write("day/nothing.gsi", "");
#if !defined(_WIN32)
    fs::create_directory_symlink(folder_.Path("day"), folder_.Path("day/a/round"));
    fs::create_symlink(folder_.Path("nowhere"), folder_.Path("day/a/dangling"));
    ASSERT_EQ(mkfifo(folder_.Path("day/pipe.gsi").c_str(), 0600), 0);
#endif
    const Outcome day = Run("--to json " + Quoted("day"));
    EXPECT_EQ(day.status, 0);
    EXPECT_THAT(NamesIn(day.out), ElementsAre("z", "a.gsi", "b.gsi", "\u0416.gsi"));
    EXPECT_THAT(day.out, AllOf(StartsWith("[\n{"), HasSubstr("a.gsi\"")));
    EXPECT_EQ(day.err, "convfile: 2 files were left out: no format fits\n");

    const Outcome named = Run("--to jsonl --format gsi " + Quoted("day"));
    EXPECT_THAT(NamesIn(named.out),
                ElementsAre("nothing", "z", "a.gsi", "b.gsi", "nothing.gsi", "\u0416.gsi"));
    EXPECT_EQ(named.err, "");

    fs::create_directory(folder_.Path("empty"));
    folder_.Write("out.json", "old");
    const Outcome none = Run("--to json -o " + Quoted("out.json") + " " + Quoted("empty"));
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(none.err, HasSubstr("empty: the folder holds no file that a format fits\n"));
    EXPECT_EQ(Read("out.json"), "old");
    EXPECT_EQ(Run("--to svg " + Quoted("day")).status, 2) << "a drawing is of one file";
}

TEST_F(ManyTest, EachFileHasAnOutputNamedAfterIt) {
    Gsi("day/site.gsi");
    Gsi("day/a/site.gsi");
    Gsi("day/a/site.raw.gsi");
    Gsi("day/two/site.gsi");
    Gsi("day/two/site.alt");
    folder_.Write("day/site.jpg", "");
    const std::string missing = Quoted("missing.gsi");
    const Outcome run =
        Run("--to json -O " + Quoted("out/new") + " " + missing + " " + Quoted("day"));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(Files("out/new"), ElementsAre("a/site.json", "a/site.raw.json", "site.json",
                                              "two/site.alt.json", "two/site.gsi.json"));
    EXPECT_THAT(Read("out/new/site.json"), StartsWith("{\n  \"file\": \"site.gsi\""));
    for (const char* view : {"table", "summary", "dxf", "points", "jsonl"})
        EXPECT_EQ(Run(std::string("-O ") + Quoted("kinds") + " --to " + view + " " +
                      Quoted("day/site.gsi"))
                      .status,
                  0);
    EXPECT_THAT(Files("kinds"), ElementsAre("site.csv", "site.dxf", "site.jsonl", "site.txt"));
}

TEST_F(ManyTest, OutputsBesideTheirFilesAreNotReadAgain) {
    Gsi("day/site.gsi");
    Gsi("day/a/site.gsi");
    const std::string again = " " + Quoted("day") + " --to ";
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(Run("-O " + Quoted("day") + again + "json").status, 0);
        EXPECT_EQ(Run("-O " + Quoted("day/out") + again + "svg").status, 0);
        EXPECT_EQ(Run("-o " + Quoted("day/all.html") + again + "json").status, 0);
        EXPECT_THAT(Files("day"),
                    ElementsAre("a/site.gsi", "a/site.json", "all.html", "out/a/site.svg",
                                "out/site.svg", "site.gsi", "site.json"));
    }
}

TEST_F(ManyTest, OutputsThatClashAreWrongUsage) {
    Gsi("a/site.gsi");
    Gsi("b/site.gsi");
    Gsi("c/site.json"); // a measured file, whatever it is named
    const std::vector<std::string> wrong = {
        "-O " + Quoted("out") + " " + Quoted("a/site.gsi") + " " + Quoted("b/site.gsi"),
        "-O " + Quoted("out") + " " + Quoted("a") + " " + Quoted("a/site.gsi"),
        "-O " + Quoted("c") + " " + Quoted("c"),
        "-o " + Quoted("c/site.json") + " " + Quoted("c"),
        "-O " + Quoted("out") + " -o " + Quoted("x") + " " + Quoted("a/site.gsi"),
    };
    const auto before = Files();
    for (const std::string& arguments : wrong) {
        const Outcome outcome = Run("--to json " + arguments);
        EXPECT_EQ(outcome.status, 2) << arguments;
        EXPECT_NE(outcome.err, "") << arguments;
    }
    EXPECT_EQ(Files(), before);
    EXPECT_EQ(Read("c/site.json"), GsiLine(0));
}

TEST_F(ManyTest, FilesAtATimeChangeNothing) {
    Gsi("day/0.gsi", 9000); // the first are the slowest, and the second goes on in its turn
    Gsi("day/1.gsi", 9999);
    for (int i = 2; i < 30; ++i)
        Gsi("day/" + std::to_string(i) + ".gsi", i);
    folder_.Write("day/2x.gsi", "");
    const std::string arguments =
        " " + Quoted("missing.gsi") + " " + Quoted("day") + " " + Quoted("day/2x.gsi") + " --to ";
    for (const char* view : {"json", "jsonl", "table", "summary", "csv", "points"}) {
        const Outcome one = Run("-j 1" + arguments + view);
        const Outcome seven = Run("-j 7" + arguments + view);
        EXPECT_EQ(seven.out, one.out) << view;
        EXPECT_EQ(seven.err, one.err) << "and no progress in a pipe";
        EXPECT_EQ(seven.status, 1);
        EXPECT_EQ(one.status, 1);
    }
    EXPECT_EQ(Run("-j 5 --to json -O " + Quoted("out") + " " + Quoted("day")).status, 0);
    EXPECT_EQ(Files("out").size(), 30U);
    for (const char* jobs : {"0", "-1", "x", "2x", "\"\""})
        EXPECT_EQ(Run(std::string("-j ") + jobs + arguments + "json").status, 2) << jobs;
}

TEST(Progress, SaysHowFarARunIs) {
    EXPECT_EQ(app::ProgressLine(0, 500, 0, "day/a.gsi", 80), "0 of 500: day/a.gsi");
    EXPECT_EQ(app::ProgressLine(100, 500, 16.1, "day/a.gsi", 80),
              "100 of 500, 1:05 left: day/a.gsi");
    EXPECT_EQ(app::ProgressLine(100, 500, 16, "a\x1B[31m\u00E8\u00E8\u00E8\u00E8\u00E8\u00E8", 32),
              "100 of 500, 1:04 left: ...\u00E8\u00E8\u00E8\u00E8\u00E8\u00E8");
    EXPECT_EQ(app::ProgressLine(100, 500, 16, "a.gsi", 5), "100 of 500, 1:04 left: ");
}

#if !defined(_WIN32)

TEST_F(ManyTest, LinksDevicesAndRightsOfAnOutputStay) {
    folder_.Write("there.json", "old");
    fs::permissions(folder_.Path("there.json"), fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("there.json", folder_.Path("link.json"));
    fs::create_symlink("new.json", folder_.Path("ahead.json"));
    EXPECT_EQ(Run("--to json -o " + Quoted("link.json") + " " + Gsi("a.gsi")).status, 0);
    EXPECT_EQ(Run("--to json -o " + Quoted("ahead.json") + " " + Gsi("a.gsi")).status, 0);
    EXPECT_TRUE(fs::is_symlink(folder_.Path("link.json")));
    EXPECT_TRUE(fs::is_symlink(folder_.Path("ahead.json")));
    EXPECT_THAT(Read("there.json"), StartsWith("{"));
    EXPECT_EQ(Read("new.json"), Read("there.json"));
    EXPECT_EQ(fs::status(folder_.Path("there.json")).permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(Run("-o /dev/null " + Gsi("a.gsi")).status, 0);
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_EQ(Run("-o /dev/stdout --to jsonl " + Gsi("a.gsi") + " | cat").status, 0);
}

TEST_F(ManyTest, AFullDiskLeavesTheOldOutput) {
    folder_.Write("out.json", "old");
    const Outcome full =
        Run("--to json -o " + Quoted("out.json") + " " + Gsi("a.gsi", 3000), "ulimit -f 64; ");
    EXPECT_EQ(full.status, 1);
    EXPECT_THAT(full.err, HasSubstr("could not be written"));
    EXPECT_EQ(Read("out.json"), "old");
    EXPECT_THAT(Files(), ElementsAre("a.gsi", "out.json"));
}

/// Runs the program as this shell line says, waits until it has begun to write, and interrupts it.
int Interrupted(const std::string& line, int signal, const std::function<bool()>& begun) {
    const pid_t child = fork();
    if (child == 0) {
        const std::string command = "exec \"" CONVFILE_PROGRAM "\" " + line;
        execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
        _exit(127);
    }
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!begun() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    kill(child, signal);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

TEST_F(ManyTest, AnInterruptLeavesTheOldOutput) {
    // The second file is a pipe that nobody writes to: the run stands there until it is
    // interrupted.
    ASSERT_EQ(mkfifo(folder_.Path("pipe.gsi").c_str(), 0600), 0);
    const std::string line =
        "--to jsonl -o " + Quoted("out.json") + " " + Gsi("a.gsi", 2000) + " " + Quoted("pipe.gsi");
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        folder_.Write("out.json", "old");
        const auto begun = [&] { return Files().size() == 4; };
        EXPECT_EQ(Interrupted(line, signal, begun), signal);
        EXPECT_EQ(Read("out.json"), "old");
        EXPECT_THAT(Files(), ElementsAre("a.gsi", "out.json", "pipe.gsi"));
    }
}

#endif

} // namespace
} // namespace convfile::test
