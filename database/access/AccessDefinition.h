#pragma once

#include "database/access/AccessPages.h"
#include "database/access/AccessTypes.h"

namespace convfile::database {

/// Reads the definition of a table that begins in that page; false where it is damaged. The table's
/// name is not in it.
bool ReadDefinition(AccessPages& pages, std::uint32_t page, AccessTable& table);

} // namespace convfile::database
