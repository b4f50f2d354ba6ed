// A row, from its first byte to its last:
//
//   number of columns (deleted ones included) when it was written; 1 byte in Jet 3, 2 later
//   values of fixed length, each at its column's offset
//   what follows, up to the map, only where a column has a variable length:
//   values of variable length
//   where those end and begin, last one first: 1 byte each in Jet 3, 2 later
//   Jet 3 alone: the columns at which those offsets pass 256, for each time they do
//   number of values of variable length; 1 byte in Jet 3, 2 later
//   map of the columns that have a value, a bit a column; of a Boolean the bit is the value

#include "database/access/AccessTable.h"

#include "database/Engine.h"
#include "database/access/AccessText.h"

#include <algorithm>
#include <tuple>

namespace convfile::database {

namespace {

constexpr std::size_t kNextPage = 4;   ///< where a page of a definition names the next
constexpr std::size_t kPageHeader = 8; ///< of the pages behind the first
constexpr unsigned char kFixed = 1;    ///< flag of a column whose values have one length
constexpr char kPrimary = 1;           ///< what an index is used for
constexpr std::size_t kKeySize = 3;    ///< a column of an index, and its order
constexpr std::uint32_t kNoColumn = 0xFFFF;

/// The pages of a definition in one.
class Definition {
public:
    Definition(AccessPages& pages, std::uint32_t first) {
        for (std::uint32_t page = first; page != 0 || bytes_.empty();) {
            const std::string_view part = pages.Page(page, PageType::Definition);
            pages.Spend(part.size());
            bytes_.append(part.substr(bytes_.empty() ? 0 : kPageHeader));
            page = NumberAt(part, kNextPage, 4);
        }
    }
    std::string_view Part(std::size_t offset, std::size_t size) const {
        if (offset > bytes_.size() || size > bytes_.size() - offset)
            throw EngineError("its definition is cut");
        return std::string_view(bytes_).substr(offset, size);
    }
    std::uint32_t Number(std::size_t offset, std::size_t size) const {
        return NumberAt(Part(offset, size), 0, size);
    }

private:
    std::string bytes_;
};

AccessColumn ColumnOf(std::string_view entry, const AccessPages& pages) {
    const auto number = [&](const ByVersion& place) { return NumberAt(entry, pages.Of(place), 2); };
    return {.name = {},
            .type = static_cast<ColumnType>(NumberAt(entry, 0, 1)),
            .number = number(kNumber),
            .isFixed = (number(kFlags) & kFixed) != 0,
            .fixedOffset = number(kFixedOffset),
            .size = number(kLength),
            .variableIndex = number(kVariableIndex),
            .displayOrder = number(kDisplayOrder),
            .scale = static_cast<int>(number(kScale) & 0xFF)};
}

/// Looks through the indexes, which begin at that offset, for the number of the column that alone
/// is the primary key; kNoColumn where there is none.
std::uint32_t PrimaryKeyOf(const Definition& definition, const AccessPages& pages,
                           std::size_t indexes) {
    const std::uint32_t count = definition.Number(pages.Of(kIndexCount), 4);
    const std::size_t uses = indexes + count * pages.Of(kIndexSize);
    for (std::size_t i = 0; i < definition.Number(pages.Of(kUseCount), 4); ++i) {
        const std::string_view use =
            definition.Part(uses + i * pages.Of(kUseSize), pages.Of(kUseSize));
        if (use[pages.Of(kUseKind)] != kPrimary)
            continue;
        const std::size_t index = NumberAt(use, pages.Of(kUseIndex), 4);
        if (index >= count)
            throw EngineError("its primary key has no index");
        const std::size_t key = indexes + index * pages.Of(kIndexSize) + pages.Of(kIndexColumns);
        const bool isAlone = definition.Number(key + kKeySize, 2) == kNoColumn;
        return isAlone ? definition.Number(key, 2) : kNoColumn;
    }
    return kNoColumn;
}

[[noreturn]] void RaiseCut() {
    throw EngineError("a row does not hold the values that it should");
}

} // namespace

AccessTable ReadDefinition(AccessPages& pages, const std::string& name, std::uint32_t page) {
    constexpr std::uint32_t kMostColumns = 255;
    const Definition definition(pages, page);
    const std::uint32_t columns = definition.Number(pages.Of(kColumnCount), 2);
    if (columns < 1 || columns > kMostColumns)
        throw EngineError("it has " + std::to_string(columns) + " columns");
    const RowPlace map = PlaceOf(definition.Number(pages.Of(kPageMap), 4));
    AccessTable table{.name = name,
                      .page = page,
                      .columns = {},
                      .rowCount = definition.Number(pages.Of(kRowCount), 4),
                      .pageMap = pages.Slot(map).bytes};
    pages.Spend(table.pageMap.size());

    const std::size_t size = pages.Of(kColumnSize);
    std::size_t column =
        pages.Of(kCounters) + definition.Number(pages.Of(kIndexCount), 4) * pages.Of(kCounterSize);
    std::size_t position = column + columns * size; // of the names
    for (std::uint32_t i = 0; i < columns; ++i, column += size) {
        table.columns.push_back(ColumnOf(definition.Part(column, size), pages));
        const std::size_t length = definition.Number(position, pages.Of(kWidth));
        position += pages.Of(kWidth);
        table.columns.back().name = DecodeText(definition.Part(position, length), pages.IsJet3());
        position += length;
    }
    std::ranges::sort(table.columns, {}, [](const AccessColumn& each) {
        return std::tuple(each.displayOrder, each.number);
    });
    const std::uint32_t key = PrimaryKeyOf(definition, pages, position);
    const auto found = std::ranges::find(table.columns, key, &AccessColumn::number);
    if (found != table.columns.end() && found->type == ColumnType::Long)
        table.primaryKey = static_cast<int>(found - table.columns.begin());
    return table;
}

const std::vector<AccessValue>& RowSplitter::Split(std::string_view row) {
    if (row.size() < width_)
        RaiseCut();
    const std::size_t written = NumberAt(row, 0, width_);
    const std::size_t mapSize = (written + 7) / 8;
    if (row.size() < width_ + mapSize)
        RaiseCut();
    const std::string_view body = row.substr(0, row.size() - mapSize);
    const std::string_view map = row.substr(body.size());

    values_.assign(table_.columns.size(), {});
    offsets_.clear();
    for (std::size_t i = 0; i < values_.size(); ++i) {
        const AccessColumn& column = table_.columns[i];
        // A column that was added after the row was written has no value in it.
        if (column.number >= written || (map[column.number / 8] >> (column.number % 8) & 1) == 0)
            continue;
        values_[i].isNull = false;
        if (column.type == ColumnType::Boolean)
            continue;
        if (!column.isFixed && offsets_.empty())
            ReadOffsets(body, row.size());
        values_[i].bytes = ValueOf(column, body);
    }
    return values_;
}

/// In Jet 3 the number of jumps follows from the size of the whole row.
void RowSplitter::ReadOffsets(std::string_view body, std::size_t rowSize) {
    const std::size_t countAt = body.size() - width_;
    const std::size_t count = NumberAt(body, countAt, width_);
    std::size_t jumps = isJet3_ ? (rowSize - 1) / 256 : 0;
    if (countAt < jumps + width_ * (count + 1))
        RaiseCut();
    const std::size_t firstAt = countAt - jumps - width_;
    if ((firstAt - count) / 256 < jumps)
        --jumps; // the last one is a dummy
    std::size_t passed = 0;
    for (std::size_t i = 0; i <= count; ++i) {
        while (passed < jumps && NumberAt(body, countAt - passed - 1, 1) == i)
            ++passed;
        offsets_.push_back(NumberAt(body, firstAt - width_ * i, width_) + passed * 256);
    }
}

std::string_view RowSplitter::ValueOf(const AccessColumn& column, std::string_view body) const {
    std::size_t begin = width_ + column.fixedOffset;
    std::size_t end = begin + column.size;
    if (!column.isFixed) {
        if (column.variableIndex + 1 >= offsets_.size())
            RaiseCut();
        begin = offsets_[column.variableIndex];
        end = offsets_[column.variableIndex + 1];
    }
    if (begin > end || end > body.size())
        RaiseCut();
    return body.substr(begin, end - begin);
}

} // namespace convfile::database
