#pragma once

#include "entry/FormatTable.h"

#include <optional>
#include <string>

namespace convfile::app {

/// How the user wants the files read. With no format set, each file's extension and content choose.
struct FormatChoice {
    std::optional<int> code;
    std::optional<std::string> name;
    bool download = false;
    bool complete = false; ///< read what the classic rules leave out
};

/// The format that a file is to be read in.
struct Route {
    std::string format = {};  ///< short name; empty: extension and content choose
    std::string problem = {}; ///< why there is no way for this file; empty: there is
    bool complete = false;
    bool trustsFormat = false; ///< it is not compared with others
};

/// The way a file takes.
Route ChooseRoute(const FormatChoice& choice, const std::string& path);

/// The table of formats, for people.
std::string FormatList();

} // namespace convfile::app
