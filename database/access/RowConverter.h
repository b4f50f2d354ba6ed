#pragma once

#include "database/access/AccessFile.h"
#include "database/access/AccessTypes.h"
#include "database/access/SqlDatabase.h"

#include <string>
#include <vector>

namespace convfile::database {

/// Turns the rows of a table into those of the database in memory. The texts of a row are kept here
/// until the next one.
class RowConverter {
public:
    RowConverter(AccessFile& file, const AccessTable& table);

    /// False where a value cannot be read.
    bool Convert(const std::vector<AccessValue>& row);
    const std::vector<SqlValue>& Values() const { return values_; }

private:
    bool ConvertValue(const AccessColumn& column, const AccessValue& from, std::size_t place);
    bool ConvertNumber(ColumnType type, std::string_view bytes, std::size_t place);
    void ConvertCurrency(std::int64_t units, std::size_t place);
    void ConvertNumeric(std::string digits, std::size_t place);
    bool ConvertMemo(std::string_view bytes, std::size_t place);
    bool ConvertOle(std::string_view bytes, std::size_t place);

    void SetInteger(std::size_t place, std::int64_t integer);
    void SetReal(std::size_t place, double real);
    void SetText(std::size_t place, std::string text);

    AccessFile& file_;
    const AccessTable& table_;
    std::vector<SqlValue> values_;
    std::vector<std::string> texts_;
    std::string memo_;
};

} // namespace convfile::database
