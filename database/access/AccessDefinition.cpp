#include "database/access/AccessDefinition.h"

#include "database/access/MdbLibrary.h"
#include "routines/CodePage.h"

#include <algorithm>
#include <memory>

namespace convfile::database {

namespace {

constexpr std::size_t kNextPage = 4;   ///< where a page of a definition names the next
constexpr std::size_t kPageHeader = 8; ///< of the pages behind the first
constexpr std::size_t kMostPages = 256;
constexpr std::uint32_t kMostColumns = 255;
constexpr std::uint32_t kMostIndexes = 1024;
constexpr std::size_t kSmallestMap = 5;

struct FreeTable {
    void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};

/// The pages of a definition in one; false where one of them is none.
bool Collect(AccessPages& pages, std::uint32_t page, std::string& definition) {
    std::string buffer;
    for (std::size_t count = 0; count < kMostPages; ++count) {
        const std::string_view part = pages.Page(page, PageType::Definition, buffer);
        if (part.empty())
            return false;
        definition.append(part.substr(count == 0 ? 0 : kPageHeader));
        page = NumberAt(part, kNextPage, 4);
        if (page == 0)
            return true;
    }
    return false;
}

/// The counts of a definition, and where its parts begin.
struct Outline {
    std::uint32_t columns;
    std::uint32_t indexUses;
    std::uint32_t indexes;
    std::size_t names; ///< of the columns
};

Outline OutlineOf(std::string_view definition, const MdbFormatConstants& format) {
    Outline outline{.columns = NumberAt(definition, format.tab_num_cols_offset, 2),
                    .indexUses = NumberAt(definition, format.tab_num_idxs_offset, 4),
                    .indexes = NumberAt(definition, format.tab_num_ridxs_offset, 4),
                    .names = 0};
    outline.names = format.tab_cols_start_offset +
                    std::size_t{outline.indexes} * format.tab_ridx_entry_size +
                    std::size_t{outline.columns} * format.tab_col_entry_size;
    return outline;
}

/// True where the pointer at that offset leads to a row of a data page.
bool LeadsToRow(AccessPages& pages, std::string_view definition, std::size_t offset) {
    std::string buffer;
    const RowPlace place = PlaceOf(NumberAt(definition, offset, 4));
    const std::string_view page = pages.Page(place.page, PageType::Data, buffer);
    return !page.empty() && !pages.Row(page, place.slot).empty();
}

/// Lets the library read the columns of a definition that was checked.
bool ReadColumns(MdbHandle* handle, std::uint32_t page, const Outline& outline,
                 AccessTable& table) {
    MdbCatalogEntry entry{};
    entry.mdb = handle;
    entry.object_type = MDB_TABLE;
    entry.table_pg = page;
    const std::unique_ptr<MdbTableDef, FreeTable> read(mdb_read_table(&entry));
    if (!read || !read->usage_map || read->map_sz < kSmallestMap || !mdb_read_columns(read.get()) ||
        read->columns->len != outline.columns)
        return false;
    table.rowCount = read->num_rows;
    table.pageMap.assign(reinterpret_cast<const char*>(read->usage_map), read->map_sz);
    for (unsigned i = 0; i < read->columns->len; ++i) {
        const auto& column = *static_cast<const MdbColumn*>(g_ptr_array_index(read->columns, i));
        if (column.fixed_offset < 0 || column.col_size < 0 || column.col_num < 0)
            return false;
        table.columns.push_back({.name = Windows1252FromUtf8(column.name),
                                 .type = static_cast<ColumnType>(column.col_type),
                                 .number = static_cast<std::size_t>(column.col_num),
                                 .isFixed = column.is_fixed != 0,
                                 .fixedOffset = static_cast<std::size_t>(column.fixed_offset),
                                 .size = static_cast<std::size_t>(column.col_size),
                                 .variableIndex = column.var_col_num,
                                 .displayOrder = column.row_col_num,
                                 .scale = column.col_prec}); // the library has the two swapped
    }
    std::ranges::stable_sort(table.columns, {}, &AccessColumn::displayOrder);
    return true;
}

/// What stands behind the names of the columns: the indexes with their columns, then what each is
/// for.
struct IndexLayout {
    std::size_t nameLength; ///< bytes of the length before a name
    std::size_t firstKey;   ///< first column of an index, in its entry; two bytes and an order each
    std::size_t indexSize;
    std::size_t useIndex; ///< which index a use is of, in its entry
    std::size_t useKind;
    std::size_t useSize;
};
constexpr IndexLayout kJet3Indexes = {1, 0, 39, 4, 19, 20};
constexpr IndexLayout kJet4Indexes = {2, 4, 52, 8, 23, 28};
constexpr char kPrimary = 1;
constexpr std::uint32_t kNoColumn = 0xFFFF;
constexpr std::size_t kKeySize = 3;

/// Where the names of the columns end; 0 where they do not fit the definition.
std::size_t NamesEnd(std::string_view definition, const Outline& outline,
                     const IndexLayout& layout) {
    std::size_t position = outline.names;
    for (std::uint32_t i = 0; i < outline.columns; ++i) {
        if (position + layout.nameLength > definition.size())
            return 0;
        position += layout.nameLength + NumberAt(definition, position, layout.nameLength);
    }
    return position <= definition.size() ? position : 0;
}

/// The column that alone is the primary key; -1 where there is none.
int FindPrimaryKey(std::string_view definition, const Outline& outline, const IndexLayout& layout,
                   const AccessTable& table) {
    const std::size_t position = NamesEnd(definition, outline, layout);
    const std::size_t firstUse = position + outline.indexes * layout.indexSize;
    if (firstUse + outline.indexUses * layout.useSize > definition.size())
        return -1;
    for (std::uint32_t i = 0; i < outline.indexUses; ++i) {
        const std::string_view use = definition.substr(firstUse + i * layout.useSize);
        const std::size_t index = NumberAt(use, layout.useIndex, 4);
        if (use[layout.useKind] != kPrimary || index >= outline.indexes)
            continue;
        const std::size_t key = position + index * layout.indexSize + layout.firstKey;
        if (NumberAt(definition, key + kKeySize, 2) != kNoColumn)
            return -1; // of more than one column
        const std::size_t number = NumberAt(definition, key, 2);
        const auto found = std::ranges::find(table.columns, number, &AccessColumn::number);
        return found == table.columns.end() ? -1 : static_cast<int>(found - table.columns.begin());
    }
    return -1;
}

} // namespace

bool ReadDefinition(AccessPages& pages, std::uint32_t page, AccessTable& table) {
    MdbHandle* const handle = pages.Mdb().handle;
    const MdbFormatConstants& format = *handle->fmt;
    std::string definition;
    if (!Collect(pages, page, definition))
        return false;
    const Outline outline = OutlineOf(definition, format);
    const IndexLayout& layout = pages.IsJet3() ? kJet3Indexes : kJet4Indexes;
    if (outline.columns < 1 || outline.columns > kMostColumns || outline.indexUses > kMostIndexes ||
        outline.indexes > kMostIndexes || NamesEnd(definition, outline, layout) == 0 ||
        !LeadsToRow(pages, definition, format.tab_usage_map_offset) ||
        !LeadsToRow(pages, definition, format.tab_free_map_offset))
        return false;
    table.page = page;
    if (!ReadColumns(handle, page, outline, table))
        return false;
    table.primaryKey = FindPrimaryKey(definition, outline, layout, table);
    return true;
}

} // namespace convfile::database
