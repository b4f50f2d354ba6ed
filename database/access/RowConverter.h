#pragma once

#include "database/access/AccessFile.h"
#include "database/access/SqlDatabase.h"

#include <string>
#include <vector>

namespace convfile::database {

/// Turns the rows of a table into those of the database in memory. The texts of a row are kept here
/// until the next one.
class RowConverter {
public:
    RowConverter(AccessFile& file, const AccessTable& table);

    /// Raises an error where a value cannot be read.
    void Convert(const std::vector<AccessValue>& row);
    const std::vector<SqlValue>& Values() const { return values_; }

private:
    SqlValue ValueOf(const AccessColumn& column, std::string_view bytes, std::string& text);
    SqlValue NumberOf(ColumnType type, std::string_view bytes, std::string& text) const;

    AccessFile& file_;
    const AccessTable& table_;
    std::vector<SqlValue> values_;
    std::vector<std::string> texts_;
    std::string memo_;
};

} // namespace convfile::database
