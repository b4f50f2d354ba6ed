#pragma once

#include "views/Conversion.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace convfile::test {

/// What of a file is read: what the program reads, or with --complete.
enum class Rules { Classic, Complete };

/// Converts a file in the format of that short name, as the program does.
void ConvertAs(const std::string& format, const std::string& path, views::Conversion& result,
               Rules rules = Rules::Classic);

/// The same for bytes, as a file of that name: without one, but for databases.
void ConvertBytesAs(const std::string& format, const std::string& name, std::string_view bytes,
                    views::Conversion& result, Rules rules = Rules::Classic);

/// The field book of a conversion as the program prints it, without how the file was read.
std::string JsonOf(const views::Conversion& conversion);

/// Both at once.
std::string ConvertToJson(const std::string& format, const std::string& path,
                          Rules rules = Rules::Classic);

/// Names and codes of all points of a field book in order: for comparing how far two books agree.
std::vector<std::string> PointNames(const memory::FieldBook& book);

/// Calls `see` with the line of every record of a conversion.
void ForEachRecordLine(const views::Conversion& conversion,
                       const std::function<void(const char* kind, std::uint64_t line)>& see);

} // namespace convfile::test
