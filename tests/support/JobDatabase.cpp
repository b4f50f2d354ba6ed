#include "tests/support/JobDatabase.h"

#include "tests/support/DatabaseText.h"

#include <algorithm>
#include <stdexcept>

namespace convfile::test {

using access::Table;

std::vector<Table> RealisticJob() {
    std::vector<Table> tables = ReadDatabaseText("day.txt").tables;
    TableNamed(tables, "tblStations").rows.at(1).values.back() = std::string(5000, 'n');
    return tables;
}

std::vector<Table> EmptyJob() {
    std::vector<Table> tables = RealisticJob();
    for (Table& table : tables)
        table.rows.clear();
    return tables;
}

Table& TableNamed(std::vector<Table>& tables, const std::string& name) {
    const auto found = std::ranges::find(tables, name, &Table::name);
    if (found == tables.end())
        throw std::invalid_argument("no table named " + name);
    return *found;
}

} // namespace convfile::test
