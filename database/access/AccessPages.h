#pragma once

#include "database/access/AccessLayout.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace convfile::database {

/// A number of up to as many bytes as its type has, low one first. The bytes must be there.
template <class Number = std::uint32_t>
constexpr Number NumberAt(std::string_view bytes, std::size_t offset, std::size_t size) {
    Number number = 0;
    for (std::size_t i = 0; i < size; ++i)
        number |= Number{static_cast<unsigned char>(bytes[offset + i])} << (8 * i);
    return number;
}

/// Page and slot of a row.
struct RowPlace {
    std::uint32_t page;
    unsigned slot;
};

/// Page and slot, as the file packs them into four bytes.
constexpr RowPlace PlaceOf(std::uint32_t packed) {
    return {packed >> 8, packed & 0xFF};
}

/// What a slot of a data page has. A row that grew out of its page leaves a slot that says where it
/// went (`movedAway`); where it is now it is `movedHere`. A deleted row has both marks.
struct RowSlot {
    std::string_view bytes;
    bool movedAway = false;
    bool movedHere = false;
};

enum class PageType : unsigned char { Data = 1, Definition = 2, Map = 5 };

/// The pages of an Access file and the rows in them. Whatever the bytes of the file, nothing
/// outside them is read, and no page number or count is believed unchecked: what is not there, or
/// not what it should be, raises an EngineError that says so.
class AccessPages {
public:
    /// Takes the file into memory. Raises an error where it cannot be opened, is no such file or
    /// may not be read without a password.
    void Open(const std::string& path);

    bool IsJet3() const { return jet3_; }
    /// An offset or a size in the version that the file has.
    std::size_t Of(const ByVersion& place) const { return jet3_ ? place.jet3 : place.jet4; }
    std::uint32_t PageCount() const { return pageCount_; }

    /// A page of that type.
    std::string_view Page(std::uint32_t page, PageType type) const;
    /// How many data pages name that table, by the page of its definition, as their owner.
    std::size_t CountOwnedBy(std::uint32_t table) const;
    bool IsOwnedBy(std::uint32_t table, std::uint32_t page) const;

    /// How many slots for rows a data page has.
    unsigned SlotCount(std::uint32_t page) const;
    RowSlot Slot(RowPlace place) const;
    /// True where what a data page says to have free is what its rows leave.
    bool IsFilled(std::uint32_t page) const;

    /// Each byte of a file belongs to one row, definition or map: who reads one says here how much
    /// it took, so that nothing is handed over again and again. Raises an error where it is more
    /// than the file has.
    void Spend(std::size_t bytes);

private:
    std::string_view Bytes(std::uint32_t page) const;
    void CheckHeader();
    std::size_t SlotsEnd(unsigned count) const {
        return Of(kSlotCount) + 2 + std::size_t{2} * count;
    }
    unsigned Entry(std::string_view page, unsigned slot) const {
        return NumberAt(page, SlotsEnd(slot), 2);
    }
    std::size_t RowEnd(std::string_view page, unsigned slot) const;

    std::vector<std::string> blocks_; ///< the whole file
    bool jet3_ = false;
    std::uint32_t pageCount_ = 0;
    std::uint64_t unspent_ = 0;
    std::unordered_map<std::uint32_t, std::size_t> owned_; ///< data pages by their owner
};

} // namespace convfile::database
