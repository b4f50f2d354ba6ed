#pragma once

#include "tests/support/AccessWriter.h"

#include <string>
#include <vector>

namespace convfile::test {

/// A field controller's job: two set-ups with shots of every kind, a third that knows nothing of
/// itself.
std::vector<access::Table> RealisticJob();

/// The same tables without a row.
std::vector<access::Table> EmptyJob();

/// The table of that name.
access::Table& TableNamed(std::vector<access::Table>& tables, const std::string& name);

} // namespace convfile::test
