// A row, from its first byte to its last:
//
//   number of columns (deleted ones included) when it was written; 1 byte in Jet 3, 2 later
//   values of fixed length, each at its column's offset
//   values of variable length
//   where those end and begin, last one first: 1 byte each in Jet 3, 2 later
//   Jet 3 alone: the columns at which those offsets pass 256, for each time they do
//   number of values of variable length; 1 byte in Jet 3, 2 later
//   map of the columns that have a value, a bit a column; of a Boolean the bit is the value

#include "database/access/AccessRow.h"

#include "database/access/AccessPages.h"

#include <algorithm>

namespace convfile::database {

namespace {

/// Where each value of variable length begins; one more for where the last one ends.
using Offsets = std::vector<std::size_t>;

bool ReadOffsetsJet4(std::string_view body, Offsets& offsets) {
    if (body.size() < 2)
        return false;
    const std::size_t countAt = body.size() - 2;
    const std::size_t count = NumberAt(body, countAt, 2);
    if (countAt < 2 * (count + 1))
        return false;
    for (std::size_t i = 0; i <= count; ++i)
        offsets.push_back(NumberAt(body, countAt - 2 * (i + 1), 2));
    return true;
}

/// `rowSize` is that of the whole row: by it the number of jumps is told.
bool ReadOffsetsJet3(std::string_view body, std::size_t rowSize, Offsets& offsets) {
    if (body.empty())
        return false;
    const std::size_t countAt = body.size() - 1;
    const std::size_t count = NumberAt(body, countAt, 1);
    std::size_t jumps = (rowSize - 1) / 256;
    if (countAt < jumps + 1 + count)
        return false;
    const std::size_t lastOffset = countAt - jumps - 1;
    if ((lastOffset - count) / 256 < jumps)
        --jumps; // the last one is a dummy
    std::size_t passed = 0;
    for (std::size_t i = 0; i <= count; ++i) {
        while (passed < jumps && NumberAt(body, countAt - passed - 1, 1) == i)
            ++passed;
        offsets.push_back(NumberAt(body, lastOffset - i, 1) + passed * 256);
    }
    return true;
}

/// The bytes of a value that is not NULL; false where they are not there.
bool FindValue(const AccessColumn& column, std::string_view body, std::size_t fixedBegin,
               const Offsets& offsets, std::string_view& bytes) {
    std::size_t begin = fixedBegin + column.fixedOffset;
    std::size_t end = begin + column.size;
    if (!column.isFixed) {
        if (column.variableIndex + 1 >= offsets.size())
            return false;
        begin = offsets[column.variableIndex];
        end = offsets[column.variableIndex + 1];
    }
    if (begin > end || end > body.size())
        return false;
    bytes = body.substr(begin, end - begin);
    return true;
}

} // namespace

bool SplitRow(std::string_view row, const AccessTable& table, bool jet3,
              std::vector<AccessValue>& values) {
    const std::size_t width = jet3 ? 1 : 2;
    if (row.size() < width)
        return false;
    const std::size_t written = NumberAt(row, 0, width);
    const std::size_t mapSize = (written + 7) / 8;
    if (row.size() < width + mapSize)
        return false;
    const std::string_view body = row.substr(0, row.size() - mapSize);
    const std::string_view map = row.substr(body.size());

    Offsets offsets;
    const bool anyVariable = std::ranges::any_of(
        table.columns, [](const AccessColumn& column) { return !column.isFixed; });
    if (anyVariable) {
        const bool read =
            jet3 ? ReadOffsetsJet3(body, row.size(), offsets) : ReadOffsetsJet4(body, offsets);
        if (!read)
            return false;
    }

    values.assign(table.columns.size(), {});
    for (std::size_t i = 0; i < values.size(); ++i) {
        const AccessColumn& column = table.columns[i];
        // A column that was added after the row was written has no value in it.
        if (column.number >= written || (map[column.number / 8] >> (column.number % 8) & 1) == 0)
            continue;
        values[i].isNull = false;
        if (column.type != ColumnType::Boolean &&
            !FindValue(column, body, width, offsets, values[i].bytes))
            return false;
    }
    return true;
}

} // namespace convfile::database
