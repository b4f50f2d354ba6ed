#pragma once

#include "host/HostExport.h"

#include <string>

namespace example {

/// What the dialogs of this thread answer from now on: this file, in the format of this code. Until
/// then, and after an empty name, they answer that the user cancelled.
///
/// Exported by convfile_host beside what convfile calls: the dialogs live in that library, which
/// must not need anything from the program (nor from convfile), so the program comes to them.
CONVFILE_HOST_API void PickFile(std::string name, int formatCode);

} // namespace example
