#include "app/Platform.h"

#include "framework/CodePage.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <windows.h>

#include <objbase.h>
#endif

namespace convfile::app {

void PrepareStandardStreams() {
#if defined(_WIN32)
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
#endif
}

std::filesystem::path PathOf(const std::string& name) {
#if defined(_WIN32)
    const auto size = static_cast<int>(name.size());
    std::wstring wide(name.size(), L'\0'); // no code page has more units than bytes
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_ACP, 0, name.data(), size, wide.data(), size)));
    return wide;
#else
    return name;
#endif
}

std::string Utf8OfName(const std::string& name) {
#if !defined(_WIN32)
    if (IsUtf8(name))
        return name;
#endif
    return Utf8FromWindows1252(name);
}

void KeepDatabaseDriver() {
#if defined(_WIN32)
    CoInitialize(nullptr);
#endif
}

} // namespace convfile::app
