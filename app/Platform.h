#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace convfile::app {

/// Standard input and output carry bytes as they are (no CR added or dropped), and a console shows
/// them as UTF-8.
void PrepareStandardStreams();

/// The arguments, without the program's own name. The program has names of files as the system
/// gives them where it is one of bytes, and in UTF-8 on Windows, so that none is beyond a code
/// page.
std::vector<std::string> Arguments(int argc, char** argv);

/// Such a name as a path, and the other way round.
std::filesystem::path PathOf(const std::string& name);
std::string NameOf(const std::filesystem::path& path);

/// Such a name as the library takes it, in the system's code page; none where that lacks it.
std::optional<std::string> SystemName(const std::string& name);

/// Opens a file to read; null where that cannot be done.
std::FILE* OpenToRead(const std::string& name);

/// True for a file that is hidden, and a folder that is.
bool IsHidden(const std::filesystem::path& path);

/// True for a folder that lies elsewhere.
bool IsLinkToFolder(const std::filesystem::path& folder);

/// How many columns the terminal has that standard error goes to; 0 where it is no terminal.
std::size_t ColumnsOfTerminal();

/// True where standard output goes to a terminal.
bool PrintsToTerminal();

/// Keeps what memory a file took for the next one, where it would go back to the system with each:
/// that interrupts all threads of a program.
void KeepFreedMemory();

/// Keeps the driver of job databases loaded on this thread: an import ends its use of it, and lets
/// go of the driver's objects only after that.
void KeepDatabaseDriver();

} // namespace convfile::app
