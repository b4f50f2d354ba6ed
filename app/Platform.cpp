#include "app/Platform.h"

#include "routines/CodePage.h"

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
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
#endif
}

std::filesystem::path PathOf(const std::string& name) {
#if defined(_WIN32)
    return WideFromSystem(name);
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
