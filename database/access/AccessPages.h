#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// As the library behind this names its own.
struct S_MdbTableDef;

namespace convfile::database {

/// Page and slot of a row.
struct RowPlace {
    std::uint32_t page;
    unsigned slot;
};

/// Page and slot, as the file packs them into four bytes.
constexpr RowPlace PlaceOf(std::uint32_t packed) {
    return {packed >> 8, packed & 0xFF};
}

/// A number of one to four bytes, low one first. The bytes must be there.
constexpr std::uint32_t NumberAt(std::string_view bytes, std::size_t offset, std::size_t size) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < size; ++i)
        number |= std::uint32_t{static_cast<unsigned char>(bytes[offset + i])} << (8 * i);
    return number;
}

enum class PageType : unsigned char { Data = 1, Definition = 2, Map = 5 };

/// The pages of an Access file, decoded, and the rows in them. Whatever the bytes of the file,
/// nothing outside them is read, and no page number or count is believed unchecked.
class AccessPages {
public:
    AccessPages();
    AccessPages(const AccessPages&) = delete;
    AccessPages& operator=(const AccessPages&) = delete;
    ~AccessPages();

    /// Takes the file into memory. False where there is no such file, or where it is no database.
    bool Open(const std::string& path);

    /// True for the oldest of the versions, whose texts have one byte a character.
    bool IsJet3() const;
    std::uint32_t PageCount() const { return pageCount_; }
    std::size_t PageSize() const { return pageSize_; }

    /// A page of that type, copied into `buffer`; empty where that page is none.
    std::string_view Page(std::uint32_t page, PageType type, std::string& buffer);
    /// How many slots for rows a data page has.
    unsigned SlotCount(std::string_view page) const;
    /// The row in a slot of a data page; empty where it has none (any more).
    std::string_view Row(std::string_view page, unsigned slot) const;

    /// The handle of the library behind this.
    struct Library;
    Library& Mdb() { return *library_; }

private:
    std::string bytes_; ///< the whole file; the library reads it from here
    std::unique_ptr<Library> library_;
    std::uint32_t pageCount_ = 0;
    std::size_t pageSize_ = 0;
    std::size_t slotCountOffset_ = 0;
};

} // namespace convfile::database
