#pragma once

#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#if !defined(_WIN32)
#include <sys/wait.h>
#endif

namespace convfile::test {

/// What a run of the program left.
struct Outcome {
    int status;
    std::string out;
    std::string err;
};

/// Runs the program as scripts do.
class ProgramTest : public testing::Test {
protected:
    /// `before` stands before it on the line.
    Outcome Run(const std::string& arguments, const std::string& before = {}) const {
        const std::string out = folder_.Path("stdout");
        const std::string err = folder_.Path("stderr");
        std::string command = before + "\"" CONVFILE_PROGRAM "\" " + arguments + " >\"" + out +
                              "\" 2>\"" + err + "\"";
#if defined(_WIN32)
        command = "\"" + command + "\""; // the shell takes the outer pair off
        const int status = std::system(command.c_str());
#else
        const int status = WEXITSTATUS(std::system(command.c_str()));
#endif
        return {status, ReadBytes(out), ReadBytes(err)};
    }
    std::string Quoted(const std::string& name) const {
        return "\"" + folder_.Path(name) + "\"";
    }

    TempFolder folder_;
};

} // namespace convfile::test
