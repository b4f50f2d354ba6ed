#pragma once

#include "framework/Export.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What a remark is about.
enum class RemarkKind : std::uint8_t {
    Unknown,       ///< lines that are no record of the format
    NotRead,       ///< known records or values that have no place in this reading
    Unit,          ///< a unit that is not read, or not applied
    NoNumber,      ///< a text where a number belongs, or more than a number
    Incomplete,    ///< a record with fewer fields or lines than it needs
    NoMeasurement, ///< points without distance and angles
    LongLine,      ///< more characters than a line can have
    LineEnd,       ///< no line end, or one that is none here
    EndsEarly,     ///< something that ends the reading, with more behind it
    Nul,           ///< a NUL byte in a line
    Declined,      ///< records that the field book declined
    OtherFormat,   ///< the content fits another format far better
    Empty,         ///< no station and no point
    Database,      ///< a database's tables, columns or rows that are not as they should be
};

/// Its name as it is written: "unknown", "not-read" ...
CONVFILE_API std::string_view NameOf(RemarkKind kind);

/// One thing that was met in a file, wherever it was, and what became of it.
struct Remark {
    RemarkKind kind{};
    std::string text;                      ///< a sentence for people, in English
    std::uint64_t count = 0;               ///< distinct lines, or things where there are no lines
    std::vector<std::uint64_t> lines = {}; ///< the first twenty of them, ascending, counted from 1
    std::uint64_t lastLine = 0;            ///< of all of them
};

/// How a file was read: what became of every line of it.
struct FileAccount {
    std::string format;      ///< short name of the format that read it; empty: none did
    std::uint64_t lines = 0; ///< up to where reading ended; records or rows where it has no lines
    std::uint64_t read = 0;  ///< recognised: records, what goes on with them, headers, blank lines
    std::uint64_t skipped = 0;   ///< the others: lines = read + skipped
    std::vector<Remark> remarks; ///< in the order of their first lines

    // How well the format fits, for the choice among formats.
    std::uint64_t blank = 0;     ///< of the lines read, those that hold nothing
    std::uint64_t numbers = 0;   ///< fields that hold the number that belongs there
    std::uint64_t noNumbers = 0; ///< fields that hold something else

    /// What the field book's angles and lengths really are: other than gon and metres where the
    /// file has a unit that its reading leaves as it stands.
    std::string angleUnit = "gon";
    std::string lengthUnit = "m";
};
