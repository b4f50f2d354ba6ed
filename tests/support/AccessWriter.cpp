#include "tests/support/AccessWriter.h"

#include "database/access/AccessLayout.h"
#include "routines/CodePage.h"

#include <algorithm>
#include <array>
#include <bit>
#include <filesystem>

namespace convfile::test::access {

namespace {

// Where things stand says the reader's table: a wrong place there changes the reference files.
using namespace database;
constexpr ByVersion kPrecision = {9, 11};    ///< of a Numeric column
constexpr ByVersion kScrambled = {126, 128}; ///< bytes of the header

constexpr std::uint32_t kCatalogPage = 2;
constexpr std::uint32_t kFreePagesPage = 1; ///< the map of the file's own free pages
/// The maps of all tables, one row each for used and free pages.
constexpr std::uint32_t kMapPage = 3;
constexpr std::size_t kMapSize = 69;
constexpr int kNumericScale = 4;
constexpr std::uint32_t kLongValues = 0x4C41564C; ///< "LVAL": owner of a page with long values
constexpr double kCreated = 38143.546;            ///< when, in days since 30 December 1899
constexpr unsigned kDeleted = 0xC000;
constexpr unsigned kMovedAway = 0x4000;
constexpr unsigned kMovedHere = 0x8000;

std::size_t Of(const ByVersion& place, Version version) {
    return version == Version::Jet3 ? place.jet3 : place.jet4;
}

void Put(std::string& bytes, std::uint64_t number, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        bytes += static_cast<char>(number >> (8 * i));
}

void Set(std::string& bytes, std::size_t offset, std::uint64_t number, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        bytes[offset + i] = static_cast<char>(number >> (8 * i));
}

/// UTF-8 as UTF-16, low byte first.
std::string Utf16(const std::string& utf8) {
    const std::filesystem::path text(std::u8string(utf8.begin(), utf8.end()));
    std::string units;
    for (const char16_t unit : text.u16string())
        Put(units, unit, 2);
    return units;
}

/// One byte for each character below U+0100; a NUL before and behind any other.
std::string Compressed(const std::string& units) {
    std::string bytes = "\xFF\xFE";
    for (std::size_t i = 0; i < units.size(); i += 2) {
        if (units[i + 1] == '\0')
            bytes += units[i];
        else
            bytes += std::string(1, '\0') + units.substr(i, 2) + std::string(1, '\0');
    }
    return bytes;
}

std::size_t FixedSize(Type type) {
    constexpr std::array<std::size_t, 17> kSizes = {0, 0, 1, 2, 4, 8, 4,  8, 8,
                                                    0, 0, 0, 0, 0, 0, 16, 17};
    return kSizes.at(static_cast<std::size_t>(type));
}

bool IsFixed(Type type) {
    return type == Type::Boolean || FixedSize(type) > 0;
}

/// A page with rows: they lie at its end, the slots that say where at its beginning.
class DataPage {
public:
    DataPage(Version version, std::uint32_t owner)
        : slotCount_(Of(kSlotCount, version)),
          bytes_(Of(kPageSize, version), '\0'),
          end_(bytes_.size()) {
        Set(bytes_, 0, 0x0101, 2);
        Set(bytes_, 4, owner, 4);
    }
    bool HasRoomFor(std::size_t size) const { return Slot(slots_ + 1) + size <= end_; }
    unsigned Add(const std::string& row, unsigned flags = 0) {
        end_ -= row.size();
        bytes_.replace(end_, row.size(), row);
        Set(bytes_, Slot(slots_), end_ | flags, 2);
        Set(bytes_, slotCount_, ++slots_, 2);
        Set(bytes_, 2, end_ - Slot(slots_), 2); // what is still free
        return static_cast<unsigned>(slots_ - 1);
    }
    const std::string& Bytes() const { return bytes_; }

private:
    std::size_t Slot(std::size_t number) const { return slotCount_ + 2 + 2 * number; }

    std::size_t slotCount_; ///< where the number of slots stands
    std::string bytes_;
    std::size_t end_;
    std::size_t slots_ = 0;
};

/// Where the columns lie in a row that has that many of them.
struct Layout {
    std::vector<std::size_t> places; ///< offset of a fixed value, index of a variable one
    std::size_t fixedSize = 0;
    std::size_t variableCount = 0;
};

Layout LayoutOf(const Table& table, std::size_t columns) {
    Layout layout;
    for (std::size_t i = 0; i < columns; ++i) {
        if (IsFixed(table.columns.at(i).type)) {
            layout.places.push_back(layout.fixedSize);
            layout.fixedSize += FixedSize(table.columns[i].type);
        } else {
            layout.places.push_back(layout.variableCount++);
        }
    }
    return layout;
}

class Writer {
public:
    Writer(Version version, const Style& style)
        : version_(version),
          style_(style),
          pages_(kMapPage + 1),
          maps_(version_, 0),
          longValues_(version_, kLongValues) {}

    std::string Write(const std::vector<Table>& tables) {
        Table catalog{.name = "MSysObjects",
                      .columns = {{"Id", Type::Long},
                                  {"ParentId", Type::Long},
                                  {"Name", Type::Text},
                                  {"Type", Type::Integer},
                                  {"Flags", Type::Long},
                                  {"LvProp", Type::Ole}},
                      .rows = {},
                      .primaryKey = -1};
        const auto list = [&](std::int64_t page, const std::string& name, std::int64_t type,
                              std::int64_t flags) {
            // No properties but the mark that they begin with.
            const std::string properties{version_ == Version::Jet3 ? "KKD" : "MR2", 4};
            catalog.rows.push_back({{page, std::int64_t{0}, name, type, flags, properties}});
        };
        constexpr std::int64_t kContainer = 3;
        constexpr std::int64_t kSystem = 0x80000000;
        list(0x0F000001, "Tables", kContainer, kSystem);
        list(kCatalogPage, catalog.name, 1, kSystem);
        for (const Table& table : tables) {
            const std::uint32_t page = NewPage();
            list(page, table.name, 1, 0);
            WriteTable(table, page);
        }
        WriteTable(catalog, kCatalogPage);
        pages_[0] = Header();
        DataPage freePages(version_, 0);
        freePages.Add(Map({}));
        pages_[kFreePagesPage] = freePages.Bytes();
        pages_[kMapPage] = maps_.Bytes();
        std::string file;
        for (const std::string& page : pages_)
            file += page;
        return file;
    }

private:
    std::size_t Of(const ByVersion& place) const { return access::Of(place, version_); }

    std::uint32_t NewPage() {
        pages_.emplace_back();
        return static_cast<std::uint32_t>(pages_.size() - 1);
    }

    /// Some 128 bytes of the header from 24 on are scrambled with a fixed key. Unscrambled they are
    /// zeros but for the code page and the date of creation, which from Jet 4 on masks the
    /// password; there is none.
    std::string Header() const {
        std::string page(Of(kPageSize), '\0');
        const std::string_view magic =
            version_ <= Version::Jet4 ? "Standard Jet DB" : "Standard ACE DB";
        Set(page, 0, 0x00000100, 4);
        page.replace(4, magic.size(), magic);
        Set(page, 20, static_cast<unsigned>(version_), 1);
        Set(page, version_ == Version::Jet3 ? 0x3A : 0x3C, 1252, 2);
        for (std::size_t i = 0; i < 40 && version_ != Version::Jet3; i += 4)
            Set(page, 0x42 + i, static_cast<std::uint64_t>(kCreated), 4);
        Set(page, 0x72, std::bit_cast<std::uint64_t>(kCreated), 8);
        constexpr std::array<unsigned char, 4> kKey = {0xC7, 0xDA, 0x39, 0x6B};
        std::array<unsigned char, 256> box{};
        for (std::size_t i = 0; i < box.size(); ++i)
            box[i] = static_cast<unsigned char>(i);
        unsigned j = 0;
        for (std::size_t i = 0; i < box.size(); ++i) {
            j = (j + box[i] + kKey[i % 4]) & 0xFF;
            std::swap(box[i], box[j]);
        }
        j = 0;
        for (std::size_t n = 0; n < Of(kScrambled); ++n) {
            const std::size_t i = (n + 1) & 0xFF;
            j = (j + box[i]) & 0xFF;
            std::swap(box[i], box[j]);
            page[24 + n] = static_cast<char>(page[24 + n] ^ box[(box[i] + box[j]) & 0xFF]);
        }
        return page;
    }

    void WriteTable(const Table& table, std::uint32_t page) {
        std::vector<std::uint32_t> dataPages;
        DataPage current(version_, page);
        std::uint32_t number = NewPage();
        const auto add = [&](const std::string& bytes, unsigned flags) {
            if (!current.HasRoomFor(bytes.size())) {
                dataPages.push_back(number);
                pages_[number] = current.Bytes();
                current = DataPage(version_, page);
                number = NewPage();
            }
            return current.Add(bytes, flags) | number << 8;
        };
        std::size_t live = 0;
        for (const Row& row : table.rows) {
            const std::string bytes = RowBytes(table, row);
            if (row.moved) {
                std::string leads;
                Put(leads, add(bytes, kMovedHere), 4);
                add(leads, row.deleted ? kDeleted : kMovedAway);
            } else {
                add(bytes, row.deleted ? kDeleted : 0);
            }
            live += row.deleted ? 0 : 1;
        }
        dataPages.push_back(number);
        pages_[number] = current.Bytes();
        const unsigned used = maps_.Add(Map(dataPages));
        const unsigned free = maps_.Add(Map({}));
        WriteDefinition(page, Definition(table, live, used, free));
    }

    /// A bit for each page: from the first one on, for as many as the map has room for, or on map
    /// pages, each for as many as it has room for.
    std::string Map(const std::vector<std::uint32_t>& pages) {
        std::string map(kMapSize, '\0');
        const auto set = [&](std::string& bits, std::size_t header, std::size_t bit) {
            char& byte = bits.at(header + bit / 8);
            byte = static_cast<char>(byte | 1 << bit % 8);
        };
        const std::size_t pagesOfEach = (Of(kPageSize) - 4) * 8;
        map[0] = style_.mapsOfPages ? 1 : 0;
        std::uint32_t first = pages.empty() ? 0 : pages.front() / 8 * 8;
        if (!style_.mapsOfPages)
            Set(map, 1, first, 4);
        for (const std::uint32_t page : pages) {
            if (!style_.mapsOfPages) {
                set(map, 5, page - first);
                continue;
            }
            const std::size_t entry = 1 + 4 * (page / pagesOfEach);
            if (map.at(entry) == 0 && map.at(entry + 1) == 0) {
                Set(map, entry, NewPage(), 4);
                pages_.back() = std::string(Of(kPageSize), '\0');
                Set(pages_.back(), 0, 0x0105, 2);
            }
            const unsigned low = static_cast<unsigned char>(map[entry]);
            const unsigned high = static_cast<unsigned char>(map[entry + 1]);
            set(pages_.at(low | high << 8), 4, page % pagesOfEach);
        }
        return map;
    }

    /// A definition takes as many pages as it needs, each of which names the next.
    void WriteDefinition(std::uint32_t page, const std::string& definition) {
        constexpr std::size_t kHeader = 8;
        const std::size_t room = Of(kPageSize) - kHeader;
        for (std::size_t at = kHeader; at < definition.size(); at += room) {
            std::string bytes = definition.substr(0, kHeader) + definition.substr(at, room);
            Set(bytes, 2, Of(kPageSize) - bytes.size(), 2);
            bytes.resize(Of(kPageSize), '\0');
            const std::uint32_t next = at + room < definition.size() ? NewPage() : 0;
            Set(bytes, 4, next, 4);
            pages_[page] = bytes;
            page = next;
        }
    }

    std::string Definition(const Table& table, std::size_t rows, unsigned usedMap,
                           unsigned freeMap) const {
        const std::size_t columns = table.columns.size();
        const Layout layout = LayoutOf(table, columns);
        const std::size_t indexes = table.otherIndexes.size() + (table.primaryKey < 0 ? 0 : 1);
        const auto dropped = std::ranges::count(table.columns, true, &Column::dropped);
        std::string d(Of(kCounters) + Of(kCounterSize) * indexes, '\0');
        Set(d, 0, 0x0102, 2);
        Set(d, Of(kRowCount), rows, 4);
        Set(d, Of(kColumnCount) - 5, 'N', 1);
        Set(d, Of(kColumnCount) - 4, columns, 2); // that there ever were
        Set(d, Of(kColumnCount) - 2, layout.variableCount, 2);
        Set(d, Of(kColumnCount), columns - static_cast<std::size_t>(dropped), 2);
        Set(d, Of(kUseCount), indexes, 4);
        Set(d, Of(kIndexCount), indexes, 4);
        Set(d, Of(kPageMap), usedMap | kMapPage << 8, 4);
        Set(d, Of(kPageMap) + 4, freeMap | kMapPage << 8, 4);
        std::string names;
        for (std::size_t i = 0; i < columns; ++i) {
            if (table.columns[i].dropped)
                continue;
            d += ColumnBytes(table.columns[i], i, layout.places[i]);
            names += NameBytes(table.columns[i].name);
        }
        d += names + IndexBytes(table);
        Set(d, 8, d.size() - 8, 4);
        return d;
    }

    std::string ColumnBytes(const Column& column, std::size_t number, std::size_t place) const {
        const bool fixed = IsFixed(column.type);
        std::string c(Of(kColumnSize), '\0');
        Set(c, 0, static_cast<unsigned char>(column.type), 1);
        Set(c, Of(kNumber), number, 2);
        Set(c, Of(kVariableIndex), fixed ? 0 : place, 2);
        Set(c, Of(kDisplayOrder),
            column.displayOrder < 0 ? number : static_cast<std::size_t>(column.displayOrder), 2);
        if (column.type == Type::Numeric) {
            Set(c, Of(kPrecision), 18, 1);
            Set(c, Of(kPrecision) + 1, kNumericScale, 1);
        }
        Set(c, Of(kFlags), fixed ? 3 : 2, 1);
        if (version_ != Version::Jet3)
            Set(c, Of(kFlags) + 1, style_.compressedText ? 1 : 0, 1);
        Set(c, Of(kFixedOffset), fixed ? place : 0, 2);
        Set(c, Of(kLength), fixed ? FixedSize(column.type) : 255, 2);
        return c;
    }

    std::string NameBytes(const std::string& utf8) const {
        const std::string name = EncodedText(utf8);
        std::string bytes;
        Put(bytes, name.size(), Of(kWidth));
        return bytes + name;
    }

    /// The columns of each index; what each is for, where the order is another one; their names.
    std::string IndexBytes(const Table& table) const {
        std::vector<std::vector<int>> indexes;
        for (const int column : table.otherIndexes)
            indexes.push_back({column});
        if (table.primaryKey >= 0)
            indexes.push_back({table.primaryKey});
        if (table.secondKey >= 0)
            indexes.back().push_back(table.secondKey);
        std::string columns;
        std::string uses;
        std::string names;
        for (std::size_t i = 0; i < indexes.size(); ++i) {
            std::string index(Of(kIndexSize), '\0');
            for (std::size_t key = 0; key < 10; ++key) {
                const bool used = key < indexes[i].size();
                const std::size_t at = Of(kIndexColumns) + 3 * key;
                Set(index, at, used ? static_cast<unsigned>(indexes[i][key]) : 0xFFFFU, 2);
                Set(index, at + 2, used ? 1 : 0, 1);
            }
            columns += index;
            const bool primary = i == table.otherIndexes.size();
            std::string use(Of(kUseSize), '\0');
            Set(use, Of(kUseIndex), i, 4);
            Set(use, Of(kUseKind), primary ? 1 : 0, 1);
            uses.insert(0, use);
            names.insert(0, NameBytes(primary ? "PrimaryKey" : "Index" + std::to_string(i)));
        }
        return columns + uses + names;
    }

    std::string RowBytes(const Table& table, const Row& row) {
        const std::size_t columns = row.values.size();
        const Layout layout = LayoutOf(table, columns);
        std::string map((columns + 7) / 8, '\0');
        std::string fixed(layout.fixedSize, '\0');
        std::vector<std::string> variable(layout.variableCount);
        for (std::size_t i = 0; i < columns; ++i) {
            const Type type = table.columns[i].type;
            const Value& value = row.values[i];
            const bool isTrue =
                std::holds_alternative<std::int64_t>(value) && std::get<std::int64_t>(value) != 0;
            const bool set =
                type == Type::Boolean ? isTrue : !std::holds_alternative<std::monostate>(value);
            if (!set)
                continue;
            map[i / 8] = static_cast<char>(map[i / 8] | 1 << i % 8);
            if (type == Type::Boolean)
                continue;
            const std::string bytes = ValueBytes(type, value);
            if (IsFixed(type))
                fixed.replace(layout.places[i], bytes.size(), bytes);
            else
                variable[layout.places[i]] = bytes;
        }
        std::string bytes;
        Put(bytes, columns, Of(kWidth));
        bytes += fixed;
        if (variable.empty())
            return bytes + map;
        std::vector<std::size_t> offsets;
        for (const std::string& content : variable) {
            offsets.push_back(bytes.size());
            bytes += content;
        }
        offsets.push_back(bytes.size());
        for (std::size_t i = offsets.size(); i-- > 0;)
            Put(bytes, offsets[i], Of(kWidth));
        if (version_ == Version::Jet3)
            bytes += Jumps(offsets, bytes.size() + 1 + map.size());
        Put(bytes, layout.variableCount, Of(kWidth));
        return bytes + map;
    }

    /// Offsets of one byte start again at every 256: at which value they do so, last one first. As
    /// many as the whole row, they included, holds 256 bytes; what no offset needs is a dummy.
    static std::string Jumps(const std::vector<std::size_t>& offsets, std::size_t sizeWithoutThem) {
        std::size_t count = 0;
        while ((sizeWithoutThem + count - 1) / 256 > count)
            ++count;
        std::string jumps;
        for (std::size_t jump = count; jump > 0; --jump) {
            const auto behind =
                std::ranges::find_if(offsets, [&](std::size_t o) { return o >= 256 * jump; });
            const auto last = static_cast<std::ptrdiff_t>(offsets.size()) - 1;
            jumps += static_cast<char>(std::min(behind - offsets.begin(), last));
        }
        return jumps;
    }

    std::string ValueBytes(Type type, const Value& value) {
        std::string bytes;
        if (const auto* const text = std::get_if<std::string>(&value)) {
            if (type == Type::Text)
                return TextBytes(*text);
            if (type == Type::Memo)
                return LongBytes(TextBytes(*text));
            return type == Type::Ole ? LongBytes(*text) : *text;
        }
        if (const auto* const real = std::get_if<double>(&value)) {
            if (type == Type::Single)
                Put(bytes, std::bit_cast<std::uint32_t>(static_cast<float>(*real)), 4);
            else
                Put(bytes, std::bit_cast<std::uint64_t>(*real), 8);
            return bytes;
        }
        const auto number = std::get<std::int64_t>(value);
        if (type != Type::Numeric) {
            Put(bytes, static_cast<std::uint64_t>(number), FixedSize(type));
            return bytes;
        }
        const auto size = static_cast<std::uint64_t>(number < 0 ? -number : number);
        bytes.assign(9, '\0');
        bytes[0] = static_cast<char>(number < 0 ? 0x80 : 0);
        Put(bytes, size >> 32, 4);
        Put(bytes, size, 4);
        return bytes;
    }

    std::string EncodedText(const std::string& utf8) const {
        return version_ == Version::Jet3 ? Windows1252FromUtf8(utf8) : Utf16(utf8);
    }
    std::string TextBytes(const std::string& utf8) const {
        const std::string text = EncodedText(utf8);
        return style_.compressedText && version_ != Version::Jet3 ? Compressed(text) : text;
    }

    /// A short value stands in its row; a longer one on pages with such values, in pieces that each
    /// say where the next one is (or, where it fits one row, in one piece).
    std::string LongBytes(const std::string& content) {
        const std::size_t longest = Of(kPageSize) / 3;
        std::string field;
        if (content.size() <= style_.longestInline) {
            Put(field, content.size() | 0x80000000U, 4);
            Put(field, 0, 8);
            return field + content;
        }
        const bool onePiece = content.size() <= longest;
        std::uint32_t next = 0;
        for (std::size_t pieces = (content.size() + longest - 1) / longest; pieces-- > 0;) {
            std::string piece;
            if (!onePiece)
                Put(piece, next, 4);
            next = AddLongValue(piece + content.substr(pieces * longest, longest));
        }
        Put(field, content.size() | (onePiece ? 0x40000000U : 0U), 4);
        Put(field, next, 4);
        Put(field, 0, 4);
        return field;
    }

    std::uint32_t AddLongValue(const std::string& piece) {
        if (longValuesPage_ == 0 || !longValues_.HasRoomFor(piece.size())) {
            longValues_ = DataPage(version_, kLongValues);
            longValuesPage_ = NewPage();
        }
        const unsigned slot = longValues_.Add(piece);
        pages_[longValuesPage_] = longValues_.Bytes();
        return slot | longValuesPage_ << 8;
    }

    Version version_;
    Style style_;
    std::vector<std::string> pages_;
    DataPage maps_;
    DataPage longValues_;
    std::uint32_t longValuesPage_ = 0;
};

} // namespace

std::string Write(Version version, const std::vector<Table>& tables, const Style& style) {
    return Writer(version, style).Write(tables);
}

} // namespace convfile::test::access
