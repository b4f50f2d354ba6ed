#include "database/access/AccessFile.h"

#include "database/Engine.h"
#include "database/access/AccessText.h"

#include <algorithm>
#include <unordered_set>

namespace convfile::database {

namespace {

constexpr std::uint32_t kCatalogPage = 2;
constexpr std::uint32_t kTableObject = 1;

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

/// Does something with a table; an error then says which one it was.
template <class Do>
void About(const std::string& table, Do what) {
    try {
        what();
    } catch (const EngineError& error) {
        throw EngineError("table " + table + ": " + error.what());
    }
}

/// The rows of a table, wherever its map of pages and the rows that moved lead.
class TableScan {
public:
    TableScan(AccessPages& pages, const AccessTable& table, const AccessFile::TakeRow& take)
        : pages_(pages), table_(table), take_(take), splitter_(table, pages) {}

    void Run() {
        const std::string_view map = table_.pageMap;
        if (map.size() >= kBitsBegin && map[0] == kMapOfBits)
            ReadMapped(map.substr(kBitsBegin), NumberAt(map, 1, 4));
        else if (!map.empty() && map[0] == kMapOfPages)
            ReadMapPages(map);
        else
            throw EngineError("its map of pages is damaged");
        if (rows_ < table_.rowCount)
            LookForTheRest();
    }

private:
    void ReadMapPages(std::string_view map) {
        const std::uint64_t pagesOfEach = (pages_.Of(kPageSize) - kMapPageHeader) * 8;
        std::uint64_t first = 0;
        for (std::size_t i = 1; i + 4 <= map.size(); i += 4, first += pagesOfEach) {
            const std::uint32_t page = NumberAt(map, i, 4);
            if (page == 0) // none of those pages is the table's
                continue;
            const std::string_view bits = pages_.Page(page, PageType::Map);
            pages_.Spend(bits.size());
            ReadMapped(bits.substr(kMapPageHeader), first);
        }
    }
    void ReadMapped(std::string_view bits, std::uint64_t first) {
        for (std::size_t i = 0; i < bits.size() * 8; ++i) {
            if ((bits[i / 8] >> (i % 8) & 1) != 0)
                ReadPage(first + i);
        }
    }
    void ReadPage(std::uint64_t page) {
        pages_.Spend(pages_.Of(kSlotCount) + 2);
        const auto number = static_cast<std::uint32_t>(page);
        if (page >= pages_.PageCount()) {
            doubt_ = "page " + std::to_string(page) + " lies outside the file";
            return;
        }
        if (!pages_.IsOwnedBy(table_.page, number)) {
            doubt_ = "page " + std::to_string(page) + " is none of its data pages";
            return;
        }
        ++ownPages_;
        if (!pages_.IsFilled(number))
            doubt_ = "page " + std::to_string(page) + " lacks rows";
        const unsigned slots = pages_.SlotCount(number);
        for (unsigned slot = 0; slot < slots; ++slot) {
            RowSlot row = pages_.Slot({number, slot});
            if (row.movedHere) {
                movedHere_ += row.movedAway ? 0 : 1;
                continue; // who leads here reads it
            }
            if (row.movedAway)
                row = Follow(row.bytes);
            pages_.Spend(row.bytes.size());
            const std::vector<AccessValue>& values = splitter_.Split(row.bytes);
            if (table_.primaryKey >= 0 &&
                values[static_cast<std::size_t>(table_.primaryKey)].isNull)
                throw EngineError("a row lacks its key");
            take_(values);
            ++rows_;
        }
    }
    RowSlot Follow(std::string_view leads) {
        const std::uint32_t packed = leads.size() < 4 ? 0 : NumberAt(leads, 0, 4);
        const RowPlace place = PlaceOf(packed);
        if (!pages_.IsOwnedBy(table_.page, place.page) || !followed_.insert(packed).second)
            throw EngineError("a row that moved is not where it should be");
        const RowSlot row = pages_.Slot(place);
        if (!row.movedHere || row.movedAway)
            throw EngineError("a row that moved is not where it should be");
        return row;
    }
    /// The definition counts more rows: its counter may be wrong, unless something else is, too.
    void LookForTheRest() {
        if (ownPages_ < pages_.CountOwnedBy(table_.page))
            doubt_ = "its map of pages lacks some";
        if (followed_.size() < movedHere_)
            doubt_ = "nothing leads to a row that moved";
        if (!doubt_.empty())
            throw EngineError(doubt_ + " (" + std::to_string(rows_) + " of " +
                              std::to_string(table_.rowCount) + " rows found)");
    }

    AccessPages& pages_;
    const AccessTable& table_;
    const AccessFile::TakeRow& take_;
    RowSplitter splitter_;
    std::size_t rows_ = 0;
    std::size_t ownPages_ = 0;
    std::size_t movedHere_ = 0;
    std::unordered_set<std::uint32_t> followed_;
    std::string doubt_; ///< why rows may be missing
};

/// Index of a column of the list of objects by its name.
std::size_t ColumnNamed(const AccessTable& table, std::string_view name) {
    const auto found = std::ranges::find(table.columns, name, &AccessColumn::name);
    if (found == table.columns.end())
        throw EngineError("table " + table.name + ": it has no column " + std::string(name));
    return static_cast<std::size_t>(found - table.columns.begin());
}

} // namespace

void AccessFile::ListTables(std::vector<Listed>& tables) {
    AccessTable catalog;
    Define({"MSysObjects", kCatalogPage}, catalog);
    const std::size_t id = ColumnNamed(catalog, "Id");
    const std::size_t name = ColumnNamed(catalog, "Name");
    const std::size_t type = ColumnNamed(catalog, "Type");
    std::unordered_set<std::uint32_t> pages;
    ReadRows(catalog, [&](const std::vector<AccessValue>& values) {
        if (values[id].bytes.size() < 4 || values[type].bytes.size() < 2)
            return;
        if (NumberAt(values[type].bytes, 0, 2) != kTableObject)
            return;
        const std::uint32_t page = NumberAt(values[id].bytes, 0, 3); // the fourth byte is a flag
        const std::string tableName = DecodeText(values[name].bytes, IsJet3());
        if (!pages.insert(page).second)
            throw EngineError(tableName + " has the definition of another table");
        if (!tableName.starts_with("MSys"))
            tables.push_back({tableName, page});
    });
}

void AccessFile::Define(const Listed& listed, AccessTable& table) {
    About(listed.name, [&] { table = ReadDefinition(pages_, listed.name, listed.page); });
}

void AccessFile::ReadRows(const AccessTable& table, const TakeRow& take) {
    About(table.name, [&] { TableScan(pages_, table, take).Run(); });
}

void AccessFile::ReadLong(std::string_view field, std::size_t wanted, std::string& content) {
    content.clear();
    if (field.size() < kLongHeader)
        throw EngineError("a long text is cut");
    const std::uint32_t header = NumberAt(field, 0, 4);
    const std::size_t length = std::min<std::size_t>(header & kLongLength, wanted);
    std::string_view piece = field.substr(kLongHeader, length);
    std::uint32_t next = NumberAt(field, kLongPlace, 4);
    while ((header & kLongInRow) == 0 && content.size() < length) {
        const RowSlot row = pages_.Slot(PlaceOf(next));
        if (row.movedAway)
            throw EngineError("a long text was deleted");
        pages_.Spend(row.bytes.size());
        piece = row.bytes;
        if ((header & kLongInOnePiece) != 0)
            break;
        if (piece.size() <= 4)
            throw EngineError("a long text is cut");
        next = NumberAt(piece, 0, 4); // each piece says where the next one is
        content.append(piece.substr(4, length - content.size()));
        piece = {};
    }
    content.append(piece.substr(0, length - content.size()));
    if (content.size() < length)
        throw EngineError("a long text is cut");
}

} // namespace convfile::database
