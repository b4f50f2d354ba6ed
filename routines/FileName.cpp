#include "routines/FileName.h"

#include "routines/CodePage.h"

namespace {

constexpr const char* kFolderEnds = "\\/";

} // namespace

void EstraiIlNomeFile(std::string& path) {
    path.erase(0, path.find_last_of(kFolderEnds) + 1);
}

void EstraiEstensFile(std::string& path) {
    EstraiIlNomeFile(path);
    const std::size_t dot = path.rfind('.');
    path.erase(0, dot == std::string::npos ? path.size() : dot + 1);
}

std::string TextOfPath(const std::string& path) {
#if defined(_WIN32)
    return path;
#else
    return IsUtf8(path) ? Windows1252FromUtf8(path) : path;
#endif
}

std::string Utf8OfName(const std::string& name) {
    return IsUtf8(name) ? name : Utf8FromWindows1252(name);
}
