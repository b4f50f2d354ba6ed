#pragma once

#include "entry/FormatTable.h"

#include <optional>
#include <string>

namespace convfile::app {

/// How the user wants the format of the files chosen. With nothing set, each file's extension does.
struct FormatChoice {
    std::optional<int> code;
    std::optional<std::string> name;
    bool download = false;
    bool complete = false; ///< read what the classic rules leave out
};

/// The entry function that a file goes through, and what it is told.
struct Route {
    bool download = false; ///< FConvFileDaStrum; otherwise FConvFileNoTopcon with `code`
    int code = 0;
    const Format* format = nullptr; ///< the format that this reaches; null: none
    bool complete = false;
    std::string problem;           ///< why there is no way for this file; empty: there is
    bool unknownExtension = false; ///< the user would be helped by the list of formats
};

/// The way a file takes. A choice that reaches no converter is a way all the same: the entry
/// function declines it.
Route ChooseRoute(const FormatChoice& choice, const std::string& path);

/// The table of formats, for people.
std::string FormatList();

} // namespace convfile::app
