#include "resources/Texts.h"

#if defined(_WIN32)

#include <windows.h>

#include <array>

namespace {

/// The library's own module: its string table, not the program's.
HMODULE OwnModule() {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCSTR>(&OwnModule), &module);
    return module;
}

} // namespace

std::string LoadText(TextId id) {
    std::array<char, 1024> buffer{};
    const int length = LoadStringA(OwnModule(), static_cast<UINT>(id), buffer.data(),
                                   static_cast<int>(buffer.size()));
    return {buffer.data(), static_cast<std::size_t>(length > 0 ? length : 0)};
}

#else

#include "routines/CodePage.h"

#include <algorithm>
#include <string_view>

namespace {

struct Text {
    unsigned id;
    std::string_view utf8;
};

constexpr Text kTexts[] = {
#define CONVFILE_TEXT(id, text) {id, text},
#include "resources/texts.inc"
#undef CONVFILE_TEXT
};

} // namespace

std::string LoadText(TextId id) {
    const auto* const found = std::ranges::find(kTexts, static_cast<unsigned>(id), &Text::id);
    if (found == std::end(kTexts))
        return {};
    constexpr std::size_t kLongest = 1023;
    return Windows1252FromUtf8(found->utf8).substr(0, kLongest);
}

#endif
