#pragma once

#include "app/Choice.h"
#include "views/Output.h"

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace convfile::app {

inline constexpr std::string_view kProgram = "convfile";
inline constexpr std::string_view kStandardInput = "-"; ///< as the name of a file

/// What the command line says.
struct Options {
    FormatChoice choice;
    std::string view = std::string(views::kTable); ///< one of views::Views()
    std::string outputFile;                        ///< one for all files; empty: standard output
    std::string outputFolder;       ///< instead of that, for a file of each; empty: not so
    std::size_t jobs = 1;           ///< so many files at a time
    std::vector<std::string> files; ///< and folders; empty only where formats are to be listed
};

/// What is to be done about it.
enum class Request {
    Convert,
    ListFormats,
    Nothing,    ///< help was asked for, and given
    WrongUsage, ///< told
};

/// Reads the arguments, the program's own name not among them. Help goes to `out`, what is wrong
/// with them to `error`. `options` counts where files are to be converted.
Request ReadOptions(std::vector<std::string> arguments, Options& options, std::ostream& out,
                    std::ostream& error);

} // namespace convfile::app
