#include "database/access/AccessFile.h"

#include "database/access/AccessDefinition.h"
#include "database/access/AccessRow.h"
#include "database/access/AccessText.h"

#include <algorithm>

namespace convfile::database {

namespace {

constexpr std::uint32_t kCatalogPage = 2;
constexpr std::uint32_t kTableObject = 1;
constexpr std::uint32_t kObjectPage = 0x00FFFFFF;

constexpr std::size_t kOwner = 4; ///< where a data page names its table

// A map of pages: either the first page and a bit for it and each that follows, or the map pages
// that have those bits, each for as many pages as it has room for.
constexpr char kMapOfBits = 0;
constexpr char kMapOfPages = 1;
constexpr std::size_t kBitsBegin = 5;
constexpr std::size_t kMapPageHeader = 4;

// A long field: its length and flags, where its content begins, four bytes more.
constexpr std::size_t kLongHeader = 12;
constexpr std::size_t kLongPlace = 4;
constexpr std::uint32_t kLongInRow = 0x80000000;
constexpr std::uint32_t kLongInOnePiece = 0x40000000;
constexpr std::uint32_t kLongLength = 0x3FFFFFFF;

/// Index of a column by its name; -1 where there is none.
int ColumnNamed(const AccessTable& table, std::string_view name) {
    const auto found = std::ranges::find(table.columns, name, &AccessColumn::name);
    return found == table.columns.end() ? -1 : static_cast<int>(found - table.columns.begin());
}

} // namespace

bool AccessFile::ListTables(std::vector<Listed>& tables) {
    AccessTable catalog;
    if (!Define({"MSysObjects", kCatalogPage}, catalog))
        return false;
    const int id = ColumnNamed(catalog, "Id");
    const int name = ColumnNamed(catalog, "Name");
    const int type = ColumnNamed(catalog, "Type");
    if (id < 0 || name < 0 || type < 0)
        return false;
    return ReadRows(catalog, [&](const std::vector<AccessValue>& values) {
        const auto bytesOf = [&](int column) {
            return values[static_cast<std::size_t>(column)].bytes;
        };
        if (bytesOf(id).size() < 4 || bytesOf(type).size() < 2)
            return true;
        const std::string tableName = DecodeText(bytesOf(name), IsJet3());
        const bool isTable = NumberAt(bytesOf(type), 0, 2) == kTableObject;
        if (isTable && !tableName.starts_with("MSys"))
            tables.push_back({tableName, NumberAt(bytesOf(id), 0, 4) & kObjectPage});
        return true;
    });
}

bool AccessFile::Define(const Listed& listed, AccessTable& table) {
    table.name = listed.name;
    return ReadDefinition(pages_, listed.page, table);
}

void AccessFile::AddMapped(std::string_view bits, std::uint64_t first,
                           std::vector<std::uint32_t>& found) const {
    for (std::size_t i = 0; i < bits.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bits[i]);
        for (unsigned bit = 0; bit < 8; ++bit) {
            const std::uint64_t page = first + i * 8 + bit;
            if ((byte >> bit & 1U) != 0 && page < pages_.PageCount())
                found.push_back(static_cast<std::uint32_t>(page));
        }
    }
}

/// The pages with the table's rows, in their order; false where its map is damaged.
bool AccessFile::CollectPages(const AccessTable& table, std::vector<std::uint32_t>& found) {
    const std::string_view map = table.pageMap;
    if (map.front() == kMapOfBits) {
        AddMapped(map.substr(kBitsBegin), NumberAt(map, 1, 4), found);
        return true;
    }
    if (map.front() != kMapOfPages)
        return false;
    const std::uint64_t pagesOfEach = (pages_.PageSize() - kMapPageHeader) * 8;
    std::string buffer;
    std::uint64_t first = 0;
    for (std::size_t i = 1; i + 4 <= map.size() && first < pages_.PageCount(); i += 4) {
        const std::uint32_t page = NumberAt(map, i, 4);
        if (page != 0) { // 0: none of those pages is the table's
            const std::string_view bits = pages_.Page(page, PageType::Map, buffer);
            if (bits.empty())
                return false;
            AddMapped(bits.substr(kMapPageHeader), first, found);
        }
        first += pagesOfEach;
    }
    return true;
}

bool AccessFile::ReadRows(const AccessTable& table, const TakeRow& take) {
    std::vector<std::uint32_t> dataPages;
    if (!CollectPages(table, dataPages))
        return false;
    std::string buffer;
    std::vector<AccessValue> values;
    std::size_t rows = 0;
    for (const std::uint32_t number : dataPages) {
        const std::string_view page = pages_.Page(number, PageType::Data, buffer);
        if (page.empty() || NumberAt(page, kOwner, 4) != table.page)
            continue; // what was on it is missed below, if anything was
        const unsigned slots = pages_.SlotCount(page);
        for (unsigned slot = 0; slot < slots; ++slot) {
            const std::string_view row = pages_.Row(page, slot);
            if (row.empty())
                continue;
            if (!SplitRow(row, table, IsJet3(), values) || !take(values))
                return false;
            ++rows;
        }
    }
    return rows >= table.rowCount;
}

bool AccessFile::ReadLong(std::string_view field, std::size_t wanted, std::string& content) {
    content.clear();
    if (field.size() < kLongHeader)
        return false;
    const std::uint32_t header = NumberAt(field, 0, 4);
    const std::size_t length = std::min<std::size_t>(header & kLongLength, wanted);
    if ((header & kLongInRow) != 0) {
        content = field.substr(kLongHeader, length);
        return true;
    }
    std::uint32_t next = NumberAt(field, kLongPlace, 4);
    std::string buffer;
    while (content.size() < length) {
        const RowPlace place = PlaceOf(next);
        const std::string_view page = pages_.Page(place.page, PageType::Data, buffer);
        std::string_view piece = page.empty() ? page : pages_.Row(page, place.slot);
        if ((header & kLongInOnePiece) == 0) { // each piece says where the next one is
            if (piece.size() <= 4)
                return false;
            next = NumberAt(piece, 0, 4);
            piece.remove_prefix(4);
        } else if (piece.size() < length) {
            return false;
        }
        content.append(piece.substr(0, length - content.size()));
    }
    return true;
}

} // namespace convfile::database
