#pragma once

#include "tests/support/AccessWriter.h"

#include <string>
#include <vector>

namespace convfile::test {

/// The answer to a SELECT: the types of its columns, and its rows.
struct TableAnswer {
    std::vector<access::Type> types;
    std::vector<std::vector<access::Value>> rows;
};

/// Runs a statement of the kind that imports a job, `SELECT columns FROM tables [WHERE a=b AND c=d
/// OR ...]`, as a database with these tables would. False where a name is unknown or a value is
/// missing.
bool RunSelect(const std::vector<access::Table>& tables, const std::string& sql,
               TableAnswer& answer);

} // namespace convfile::test
