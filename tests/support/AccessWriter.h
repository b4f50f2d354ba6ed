#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace convfile::test {

/// Writes small Access files, so that the tests need no other program to make them. The same tables
/// always give the same bytes.
namespace access {

enum class Type : unsigned char {
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
};

/// A value: none (NULL); a whole number (Currency in ten-thousandths, Numeric in its last
/// decimals); a real one; a text in UTF-8 (of Binary, Ole and Guid the bytes).
using Value = std::variant<std::monostate, std::int64_t, double, std::string>;

struct Column {
    std::string name;
    Type type;
    int displayOrder = -1; ///< -1: where it stands
    bool dropped = false;  ///< the table has it no more, but its rows still do
};

/// A row with fewer values than its table has columns was written before the last ones were added.
struct Row {
    std::vector<Value> values;
    bool deleted = false;
    bool moved = false; ///< it grew out of its page: what is left there says where it is now
};

struct Table {
    std::string name;
    std::vector<Column> columns;
    std::vector<Row> rows;
    int primaryKey = -1; ///< index of a column
    int secondKey = -1;  ///< another one that is part of the primary key
    /// Columns with an index of their own, which stand before that of the primary key.
    std::vector<int> otherIndexes = {};
};

enum class Version : unsigned char { Jet3 = 0, Jet4 = 1, Ace12 = 2, Ace14 = 3 };

/// How texts are stored (in Jet 3 always in Windows-1252), and long ones.
struct Style {
    bool compressedText = false;
    /// Memos longer than this are written on pages of their own, where they do not fit in pieces.
    std::size_t longestInline = 64;
    /// Which pages a table has is said on pages of their own, not in one row.
    bool mapsOfPages = false;
};

/// The bytes of a file with these tables.
std::string Write(Version version, const std::vector<Table>& tables, const Style& style = {});

} // namespace access

} // namespace convfile::test
