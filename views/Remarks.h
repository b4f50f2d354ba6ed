#pragma once

#include "entry/ConvertFile.h"
#include "views/Output.h"

#include <string>

namespace convfile::views {

/// A remark in one line: "unit: ... (1733 lines: 2-1734)".
std::string ShownRemark(const Remark& remark);

/// The remarks of a file, one line each.
void PrintRemarks(Sink& sink, const FileAccount& account);

} // namespace convfile::views
