#include "app/Platform.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <windows.h>

#include <objbase.h>
#include <shellapi.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#if defined(__GLIBC__)
#include <malloc.h>
#endif
#endif

namespace convfile::app {

namespace {

/// Where a terminal does not tell how wide it is.
constexpr std::size_t kUsualColumns = 80;

#if defined(_WIN32)

std::string Narrow(std::wstring_view wide, unsigned codePage, DWORD flags, BOOL* lacking) {
    const auto size = static_cast<int>(wide.size());
    const auto convert = [&](char* to, int room) {
        return WideCharToMultiByte(codePage, flags, wide.data(), size, to, room, nullptr, lacking);
    };
    std::string narrow(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
    convert(narrow.data(), static_cast<int>(narrow.size()));
    return narrow;
}

std::string Utf8FromWide(std::wstring_view wide) {
    return Narrow(wide, CP_UTF8, 0, nullptr);
}

DWORD AttributesOf(const std::filesystem::path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes == INVALID_FILE_ATTRIBUTES ? 0 : attributes;
}

#endif

} // namespace

#if defined(_WIN32)

void PrepareStandardStreams() {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
}

std::vector<std::string> Arguments(int, char**) {
    std::vector<std::string> arguments;
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; i < count; ++i)
        arguments.push_back(Utf8FromWide(wide[i]));
    LocalFree(static_cast<void*>(wide));
    return arguments;
}

std::filesystem::path PathOf(const std::string& name) {
    const auto size = static_cast<int>(name.size());
    std::wstring wide(name.size(), L'\0'); // UTF-8 has no fewer bytes than UTF-16 units
    const int length = MultiByteToWideChar(CP_UTF8, 0, name.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

std::string NameOf(const std::filesystem::path& path) {
    return Utf8FromWide(path.native());
}

std::optional<std::string> SystemName(const std::string& name) {
    BOOL lacking = FALSE;
    std::string narrow = Narrow(PathOf(name).native(), CP_ACP, WC_NO_BEST_FIT_CHARS,
                                GetACP() == CP_UTF8 ? nullptr : &lacking);
    if (lacking)
        return std::nullopt;
    return narrow;
}

std::FILE* OpenToRead(const std::string& name) {
    return _wfopen(PathOf(name).c_str(), L"rb");
}

bool IsHidden(const std::filesystem::path& path) {
    return path.filename().native().starts_with(L'.') ||
           (AttributesOf(path) & FILE_ATTRIBUTE_HIDDEN) != 0;
}

bool IsLinkToFolder(const std::filesystem::path& folder) {
    return (AttributesOf(folder) & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

std::size_t ColumnsOfTerminal() {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info))
        return 0;
    return info.dwSize.X > 0 ? static_cast<std::size_t>(info.dwSize.X) : kUsualColumns;
}

bool PrintsToTerminal() {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) != 0;
}

void KeepFreedMemory() {}

void KeepDatabaseDriver() {
    CoInitialize(nullptr);
}

#else

void PrepareStandardStreams() {}

std::vector<std::string> Arguments(int argc, char** argv) {
    return {argv + 1, argv + argc};
}

std::filesystem::path PathOf(const std::string& name) {
    return name;
}

std::string NameOf(const std::filesystem::path& path) {
    return path.native();
}

std::optional<std::string> SystemName(const std::string& name) {
    return name;
}

std::FILE* OpenToRead(const std::string& name) {
    return std::fopen(name.c_str(), "rb");
}

bool IsHidden(const std::filesystem::path& path) {
    return path.filename().native().starts_with('.');
}

bool IsLinkToFolder(const std::filesystem::path& folder) {
    std::error_code error;
    return std::filesystem::is_symlink(folder, error);
}

std::size_t ColumnsOfTerminal() {
    if (isatty(STDERR_FILENO) == 0)
        return 0;
    winsize size{};
    const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : kUsualColumns;
}

bool PrintsToTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}

void KeepFreedMemory() {
#if defined(__GLIBC__)
    constexpr int kKept = 32 << 20;    // bytes, for each thread
    constexpr int kOfItsOwn = 4 << 20; // from this size on a piece goes back by itself
    mallopt(M_TRIM_THRESHOLD, kKept);
    mallopt(M_MMAP_THRESHOLD, kOfItsOwn);
#endif
}

void KeepDatabaseDriver() {}

#endif

} // namespace convfile::app
