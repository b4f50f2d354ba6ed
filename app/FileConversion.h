#pragma once

#include "views/Conversion.h"

#include <string>

namespace convfile::app {

/// Converts one file that was named on the command line. Its bytes may lie in memory or come from a
/// stream; then `path` is only its name. (A job database's cannot.) Any number of threads may do so
/// at once.
void Convert(const views::Route& route, const std::string& path, views::Conversion& result,
             const ByteSource& source = {});

/// True where a file can be read and no format fits its content.
bool FitsNoFormat(const std::string& path, bool complete);

} // namespace convfile::app
