#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace convfile::app {

/// A file to convert.
struct Input {
    static constexpr std::size_t kNamed = static_cast<std::size_t>(-1);

    std::string file;                 ///< as it was named, or found below a named folder
    std::filesystem::path below = {}; ///< the folder that it lies in, from the named one
    std::size_t folder = kNamed;      ///< by which of the named folders it was found

    bool IsFound() const { return folder != kNamed; }
};

/// What the command line names.
struct Inputs {
    std::vector<Input> files;
    std::vector<std::string> folders;    ///< those that were named
    std::vector<std::string> unreadable; ///< folders whose files are not known
};

/// The files named, each folder replaced by all files below it in the order of the parts of their
/// paths. Hidden ones, links to folders and what is no file (devices, pipes) are left out, and what
/// lies in `without`, the folder of the outputs, unless that is a named one or holds it.
Inputs FindInputs(const std::vector<std::string>& names, const std::filesystem::path& without);

} // namespace convfile::app
