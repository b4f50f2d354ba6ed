#pragma once

#include "database/access/AccessPages.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What an Access file holds, as the reader gives it.
namespace convfile::database {

/// The types of a column, by the numbers that the file has for them.
enum class ColumnType : int {
    Boolean = 0x01,
    Byte = 0x02,
    Integer = 0x03,
    Long = 0x04,
    Currency = 0x05,
    Single = 0x06,
    Double = 0x07,
    Date = 0x08,
    Binary = 0x09,
    Text = 0x0A,
    Ole = 0x0B,
    Memo = 0x0C,
    Guid = 0x0F,
    Numeric = 0x10,
    Complex = 0x12,
};

struct AccessColumn {
    std::string name; ///< Windows-1252
    ColumnType type = ColumnType::Complex;
    std::size_t number = 0;      ///< its bit in a row's map of values
    bool isFixed = false;        ///< its value lies at `fixedOffset`, `size` bytes; otherwise it is
    std::size_t fixedOffset = 0; ///< the row's `variableIndex`-th value of variable length
    std::size_t size = 0;
    std::size_t variableIndex = 0;
    std::size_t displayOrder = 0;
    int scale = 0; ///< decimals of a Numeric
};

struct AccessTable {
    std::string name;
    std::uint32_t page = 0;            ///< where its definition begins
    std::vector<AccessColumn> columns; ///< in their displayed order
    int primaryKey = -1;               ///< the Long column that alone is the primary key; -1: none
    std::size_t rowCount = 0;          ///< as its definition says, which need not be true
    std::string_view pageMap;          ///< which pages hold its rows
};

/// A value as it lies in its row: its bytes, none where it is NULL. A Boolean has none either way:
/// where it is false it counts as NULL.
struct AccessValue {
    std::string_view bytes;
    bool isNull = true;
};

/// Reads the definition of a table that begins in that page. Raises an error where it is damaged.
AccessTable ReadDefinition(AccessPages& pages, const std::string& name, std::uint32_t page);

/// Splits the rows of a table into the values of its columns.
class RowSplitter {
public:
    RowSplitter(const AccessTable& table, const AccessPages& pages)
        : table_(table), isJet3_(pages.IsJet3()), width_(pages.Of(kWidth)) {}

    /// The values in the order of the columns, pieces of the row: they hold until the next one is
    /// split. Raises an error where the row does not hold what it says it does.
    const std::vector<AccessValue>& Split(std::string_view row);

private:
    void ReadOffsets(std::string_view body, std::size_t rowSize);
    std::string_view ValueOf(const AccessColumn& column, std::string_view body) const;

    const AccessTable& table_;
    bool isJet3_;
    std::size_t width_;
    std::vector<AccessValue> values_;
    /// Where each value of variable length begins; one more for where the last one ends.
    std::vector<std::size_t> offsets_;
};

} // namespace convfile::database
