// An Access file consists of pages of 2 or 4 kB:
//
//   page 0      header: "Standard Jet DB" or "Standard ACE DB" at byte 4, the version at byte 20
//   page 2      definition of MSysObjects, the list of all objects
//   type 1      data page: its owner (the page of its table's definition) at byte 4, the number of
//               its slots, the slots: where each row begins, from the end of the page downwards
//   type 2      definition of a table, which may go on in further pages
//   type 5      map of pages, a bit a page

#include "database/access/AccessPages.h"

#include "database/access/MdbLibrary.h"
#include "routines/InputFile.h"

#include <algorithm>
#include <array>

namespace convfile::database {

namespace {

constexpr std::size_t kSmallestFile = std::size_t{3} * 2048;
constexpr std::size_t kMagicOffset = 4;
constexpr std::string_view kJetMagic{"Standard Jet DB\0", 16};
constexpr std::string_view kAceMagic{"Standard ACE DB\0", 16};
constexpr std::size_t kVersionOffset = 20;
constexpr unsigned char kNewestVersion = 6;

// A slot: where its row begins, and flags. A deleted row has both of them; one that grew out of its
// page has this one on its old slot and the other on its new one, where it is read.
constexpr unsigned kMovedAway = 0x4000;
constexpr unsigned kRowOffset = 0x1FFF;

std::string ReadWhole(InputFile& file) {
    std::string bytes;
    std::array<char, 64UL * 1024> block;
    for (std::size_t read = block.size(); read == block.size();) {
        read = file.Read(block.data(), block.size());
        bytes.append(block.data(), read);
    }
    return bytes;
}

bool IsDatabase(std::string_view bytes) {
    if (bytes.size() < kSmallestFile)
        return false;
    const std::string_view magic = bytes.substr(kMagicOffset, kJetMagic.size());
    const auto version = static_cast<unsigned char>(bytes[kVersionOffset]);
    return (magic == kJetMagic || magic == kAceMagic) && version <= kNewestVersion;
}

} // namespace

AccessPages::AccessPages() = default;
AccessPages::~AccessPages() = default;

bool AccessPages::Open(const std::string& path) {
    InputFile file;
    if (!file.Open(path))
        return false;
    bytes_ = ReadWhole(file);
    if (!IsDatabase(bytes_))
        return false;
    MdbHandle* const handle = mdb_open_buffer(bytes_.data(), bytes_.size(), MDB_NOFLAGS);
    if (!handle)
        return false;
    library_ = std::make_unique<Library>(handle);
    // Names of columns go through this conversion, which the environment may have made another.
    const auto none = reinterpret_cast<iconv_t>(-1); // NOLINT(performance-no-int-to-ptr)
    if (handle->iconv_in != none)
        iconv_close(handle->iconv_in);
    handle->iconv_in = iconv_open("UTF-8", IsJet3() ? "WINDOWS-1252" : "UCS-2LE");
    pageSize_ = static_cast<std::size_t>(handle->fmt->pg_size);
    pageCount_ = static_cast<std::uint32_t>(bytes_.size() / pageSize_);
    slotCountOffset_ = handle->fmt->row_count_offset;
    return handle->iconv_in != none;
}

bool AccessPages::IsJet3() const {
    return IS_JET3(library_->handle);
}

std::string_view AccessPages::Page(std::uint32_t page, PageType type, std::string& buffer) {
    if (page == 0 || page >= pageCount_)
        return {};
    MdbHandle* const handle = library_->handle;
    if (mdb_read_pg(handle, page) != static_cast<ssize_t>(pageSize_) ||
        handle->pg_buf[0] != static_cast<unsigned char>(type))
        return {};
    buffer.assign(reinterpret_cast<const char*>(handle->pg_buf), pageSize_);
    return buffer;
}

unsigned AccessPages::SlotCount(std::string_view page) const {
    const auto room = static_cast<unsigned>((pageSize_ - slotCountOffset_ - 2) / 2);
    return std::min<unsigned>(NumberAt(page, slotCountOffset_, 2), room);
}

/// A row ends where the one before it begins, the first at the end of the page.
std::string_view AccessPages::Row(std::string_view page, unsigned slot) const {
    if (slot >= SlotCount(page))
        return {};
    const auto entryOf = [&](unsigned i) {
        return NumberAt(page, slotCountOffset_ + 2 + std::size_t{2} * i, 2);
    };
    const std::uint32_t entry = entryOf(slot);
    const std::size_t begin = entry & kRowOffset;
    const std::size_t end = slot == 0 ? pageSize_ : entryOf(slot - 1) & kRowOffset;
    if ((entry & kMovedAway) != 0 || begin >= end || end > pageSize_)
        return {};
    return page.substr(begin, end - begin);
}

} // namespace convfile::database
