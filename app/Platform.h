#pragma once

#include <filesystem>
#include <string>

namespace convfile::app {

/// Standard input and output carry bytes as they are (no CR added or dropped), and a console shows
/// them as UTF-8.
void PrepareStandardStreams();

/// A name as the command line gives it, in the system's code page, as a path of the library that
/// knows folders. (Made directly from bytes, that one takes them for UTF-8 on Windows.)
std::filesystem::path PathOf(const std::string& name);

/// Such a name in UTF-8.
std::string Utf8OfName(const std::string& name);

/// Keeps the driver of job databases loaded on this thread: an import ends its use of it, and lets
/// go of the driver's objects only after that.
void KeepDatabaseDriver();

} // namespace convfile::app
