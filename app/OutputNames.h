#pragma once

#include "app/Inputs.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace convfile::app {

/// Tells that no format fits a file, so that nothing comes of it.
using FitsNothing = std::function<bool(const Input&)>;

/// Takes out of what was found in folders the file at the place of the one output where it is no
/// instrument file: an earlier run made it. Gives how many were taken out; `problem` says what an
/// output would overwrite that is to be converted, empty where nothing.
std::size_t TakeOutOutput(Inputs& inputs, const std::filesystem::path& output,
                          const FitsNothing& fitsNothing, std::string& problem);

/// Where the output of each file goes, below that folder: its name with the other extension, or,
/// where several in one folder have the same stem, with that behind its own. What was found where
/// an output might go or beside another file of its stem, and fits nothing, is taken out first and
/// counted in `takenOut`. Empty, and `problem` says why, where two would have the same output or
/// one would overwrite a file that is to be converted.
std::vector<std::filesystem::path> NameOutputs(Inputs& inputs, const std::filesystem::path& folder,
                                               std::string_view extension,
                                               const FitsNothing& fitsNothing,
                                               std::size_t& takenOut, std::string& problem);

} // namespace convfile::app
