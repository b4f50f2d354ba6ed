#pragma once

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
    int displayOrder = 0;
    int scale = 0; ///< decimals of a Numeric
};

struct AccessTable {
    std::string name;
    std::uint32_t page = 0;            ///< where its definition begins
    std::vector<AccessColumn> columns; ///< in their displayed order
    int primaryKey = -1;               ///< the column that alone is the primary key; -1: none
    std::size_t rowCount = 0;          ///< as its definition says
    std::string pageMap;               ///< which pages hold its rows
};

/// A value as it lies in its row: its bytes, none where it is NULL. A Boolean has none either way:
/// where it is false it counts as NULL.
struct AccessValue {
    std::string_view bytes;
    bool isNull = true;
};

} // namespace convfile::database
