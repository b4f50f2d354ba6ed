// Many files and what is written of them: that old outputs last until new ones are whole, and that a
// run says and writes the same however many files it takes at a time.

#include "tests/support/Files.h"
#include "tests/support/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
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
using testing::IsEmpty;
using testing::Not;
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
    // The second file is a pipe that nobody writes to: the run stands there until it is interrupted.
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
