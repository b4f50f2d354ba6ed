#pragma once

#include "host/HostExport.h"

#include <string>

// File names are bytes as the C library opens them: on Windows in the system's code page, elsewhere
// as the system has them.

/// Asks for a file and a format code. True when the user confirmed both; `formatCode` comes in as
/// 0. `option` is the caller's own and is only passed through.
CONVFILE_HOST_API bool FInpNomeFileConvNoTopcon(std::string& fileName, int& formatCode,
                                                bool option);

/// Asks for a file downloaded from an instrument. True when the user confirmed it. `dialogMode` is
/// the caller's own and is only passed through.
CONVFILE_HOST_API bool FInpNomeFileConvInCorv(std::string& fileName, int dialogMode);
