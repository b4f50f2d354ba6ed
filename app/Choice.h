#pragma once

#include "entry/FormatTable.h"
#include "views/Conversion.h"

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

/// The way a file takes.
views::Route ChooseRoute(const FormatChoice& choice, const std::string& path);

/// The table of formats, for people.
std::string FormatList();

} // namespace convfile::app
