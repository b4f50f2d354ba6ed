#pragma once

#include "database/access/AccessTypes.h"

#include <string_view>
#include <vector>

namespace convfile::database {

/// Splits a row into the values of its table's columns, in their order. False where the row does
/// not hold what it says it does. The values are pieces of the row.
bool SplitRow(std::string_view row, const AccessTable& table, bool jet3,
              std::vector<AccessValue>& values);

} // namespace convfile::database
