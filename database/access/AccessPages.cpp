// An Access file consists of pages of 2 or 4 kB:
//
//   page 0      header: "Standard Jet DB" or "Standard ACE DB" at byte 4, the version at byte 20
//   page 2      definition of MSysObjects, the list of all objects
//   type 1      data page: what is free in it at byte 2, its owner (the page of its table's
//               definition) at byte 4, the number of its slots, the slots: where each row begins,
//               from the end of the page downwards
//   type 2      definition of a table, which may go on in further pages
//   type 5      map of pages, a bit a page

#include "database/access/AccessPages.h"

#include "database/Engine.h"
#include "database/FirstPage.h"
#include "routines/InputFile.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace convfile::database {

namespace {

constexpr std::size_t kBlock = 64UL * 1024; // whole pages

constexpr std::size_t kVersionOffset = 20;
constexpr unsigned char kNewestVersion = 6;

// Part of the header is scrambled; the bytes from this one on, which tell whether the pages can be
// read, with these:
constexpr std::size_t kScrambledOffset = 0x3E;
constexpr std::array<unsigned char, 60> kScrambledWith = {
    0xFB, 0x8A, 0xBC, 0x4E, 0x86, 0xFB, 0xEC, 0x37, 0x5D, 0x44, 0x9C, 0xFA, 0xC6, 0x5E, 0x28,
    0xE6, 0x13, 0xB6, 0x8A, 0x60, 0x54, 0x94, 0x7B, 0x36, 0xF5, 0x72, 0xDF, 0xB1, 0x77, 0xF4,
    0x13, 0x43, 0xCF, 0xAF, 0xB1, 0x33, 0x34, 0x61, 0x79, 0x5B, 0x92, 0xB5, 0x7C, 0x2A, 0x05,
    0xF1, 0x7C, 0x99, 0x01, 0x1B, 0x98, 0xFD, 0x12, 0x4F, 0x4A, 0x94, 0x6C, 0x3E, 0x60, 0x26,
};
// Unscrambled: what the pages are encrypted with, which is 0 where they are not; the password; when
// the file was made, in days (as a double), which from Jet 4 on masks the password.
constexpr std::size_t kKey = 0;
constexpr std::size_t kPasswordBegin = 4;
constexpr std::size_t kCreation = 52;

constexpr std::size_t kFreeOffset = 2;
constexpr std::size_t kOwnerOffset = 4;
constexpr unsigned kMovedHere = 0x8000;
constexpr unsigned kMovedAway = 0x4000;
constexpr unsigned kRowOffset = 0x1FFF;

[[noreturn]] void RaisePage(std::uint32_t page, const std::string& what) {
    throw EngineError("page " + std::to_string(page) + " " + what);
}

/// What a page is not, by the type that it should have.
constexpr std::array<const char*, 6> kIsNone = {
    "", "is no data page", "is no definition of a table", "", "", "is no map of pages"};

} // namespace

void AccessPages::Open(const std::string& path) {
    InputFile file;
    if (!file.Open(path))
        throw EngineError("cannot be opened");
    std::uint64_t size = 0;
    for (std::size_t read = kBlock; read == kBlock; size += read) {
        std::string block(kBlock, '\0');
        read = file.Read(block.data(), kBlock);
        block.resize(read);
        blocks_.push_back(std::move(block));
        if (blocks_.size() == 1)
            CheckHeader();
    }
    pageCount_ = static_cast<std::uint32_t>(size / Of(kPageSize));
    unspent_ = size;
    for (std::uint32_t page = 0; page < pageCount_; ++page) {
        const std::string_view bytes = Bytes(page);
        if (bytes[0] == static_cast<char>(PageType::Data))
            ++owned_[NumberAt(bytes, kOwnerOffset, 4)];
    }
}

void AccessPages::CheckHeader() {
    const std::string_view page = std::string_view(blocks_[0]).substr(0, kPageSize.jet3);
    if (page.size() < kPageSize.jet3 || !BeginsAccessFile(page))
        throw EngineError("is no Access file");
    const auto version = static_cast<unsigned char>(page[kVersionOffset]);
    if (version > kNewestVersion)
        throw EngineError("is an Access file of unknown version " + std::to_string(version));
    jet3_ = version == 0;
    std::string header(page.substr(kScrambledOffset, kScrambledWith.size()));
    for (std::size_t i = 0; i < header.size(); ++i)
        header[i] = static_cast<char>(header[i] ^ kScrambledWith[i]);
    if (NumberAt(header, kKey, 4) != 0)
        throw EngineError("is encrypted");
    const auto days = std::bit_cast<double>(NumberAt<std::uint64_t>(header, kCreation, 8));
    const bool isMasked = !jet3_ && days > -1e9 && days < 1e9;
    const auto mask = isMasked ? static_cast<std::uint32_t>(static_cast<std::int32_t>(days)) : 0U;
    for (std::size_t i = kPasswordBegin; i < kPasswordBegin + Of(kPassword); i += 4) {
        if (NumberAt(header, i, 4) != mask)
            throw EngineError("is protected by a password");
    }
}

std::string_view AccessPages::Bytes(std::uint32_t page) const {
    const std::size_t offset = page * Of(kPageSize);
    return std::string_view(blocks_[offset / kBlock]).substr(offset % kBlock, Of(kPageSize));
}

std::string_view AccessPages::Page(std::uint32_t page, PageType type) const {
    if (page >= pageCount_)
        RaisePage(page, "lies outside the file");
    const std::string_view bytes = Bytes(page);
    if (page == 0 || bytes[0] != static_cast<char>(type))
        RaisePage(page, kIsNone.at(static_cast<std::size_t>(type)));
    return bytes;
}

std::size_t AccessPages::CountOwnedBy(std::uint32_t table) const {
    const auto found = owned_.find(table);
    return found == owned_.end() ? 0 : found->second;
}

bool AccessPages::IsOwnedBy(std::uint32_t table, std::uint32_t page) const {
    if (page == 0 || page >= pageCount_)
        return false;
    const std::string_view bytes = Bytes(page);
    return bytes[0] == static_cast<char>(PageType::Data) &&
           NumberAt(bytes, kOwnerOffset, 4) == table;
}

unsigned AccessPages::SlotCount(std::uint32_t page) const {
    const unsigned count = NumberAt(Page(page, PageType::Data), Of(kSlotCount), 2);
    if (SlotsEnd(count) > Of(kPageSize))
        RaisePage(page, "has more rows than fit into it");
    return count;
}

/// A row ends where the one before it begins, the first at the end of the page.
std::size_t AccessPages::RowEnd(std::string_view page, unsigned slot) const {
    return slot == 0 ? Of(kPageSize) : Entry(page, slot - 1) & kRowOffset;
}

RowSlot AccessPages::Slot(RowPlace place) const {
    const std::string_view page = Page(place.page, PageType::Data);
    const unsigned count = SlotCount(place.page);
    if (place.slot >= count)
        RaisePage(place.page, "has no row " + std::to_string(place.slot));
    const std::size_t begin = RowEnd(page, place.slot + 1);
    const std::size_t end = RowEnd(page, place.slot);
    if (begin < SlotsEnd(count) || begin > end || end > Of(kPageSize))
        RaisePage(place.page, "has a row " + std::to_string(place.slot) + " that overlaps another");
    const unsigned flags = Entry(page, place.slot);
    return {page.substr(begin, end - begin), (flags & kMovedAway) != 0, (flags & kMovedHere) != 0};
}

bool AccessPages::IsFilled(std::uint32_t page) const {
    const std::string_view bytes = Page(page, PageType::Data);
    const unsigned count = SlotCount(page);
    return RowEnd(bytes, count) == SlotsEnd(count) + NumberAt(bytes, kFreeOffset, 2);
}

void AccessPages::Spend(std::size_t bytes) {
    if (bytes > unspent_)
        throw EngineError("more rows share their bytes than the file has");
    unspent_ -= bytes;
}

} // namespace convfile::database
