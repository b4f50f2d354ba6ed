#pragma once

#include "routines/Text.h"

#include <string_view>

/// What the first page of an Access file begins with.
namespace convfile::database {

/// True where the bytes begin an Access file, of the engine's old kind or the new one.
constexpr bool BeginsAccessFile(std::string_view bytes) {
    constexpr std::size_t kMagicOffset = 4;
    constexpr std::string_view kJetMagic{"Standard Jet DB\0", 16};
    constexpr std::string_view kAceMagic{"Standard ACE DB\0", 16};
    const std::string_view magic = Piece(bytes, kMagicOffset, kJetMagic.size());
    return magic == kJetMagic || magic == kAceMagic;
}

} // namespace convfile::database
