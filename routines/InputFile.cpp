#include "routines/InputFile.h"

#if !defined(_WIN32)
#include <sys/stat.h>
#endif

namespace {

/// Off Windows a folder opens like a file and only its reading fails.
bool IsFolder([[maybe_unused]] std::FILE* file) {
#if defined(_WIN32)
    return false;
#else
    struct stat status {};
    return fstat(fileno(file), &status) == 0 && S_ISDIR(status.st_mode);
#endif
}

} // namespace

bool InputFile::Open(const std::string& name) {
    file_.reset(name.empty() ? nullptr : std::fopen(name.c_str(), "rb"));
    if (file_ && IsFolder(file_.get()))
        file_.reset();
    return file_ != nullptr;
}

std::size_t InputFile::Read(char* bytes, std::size_t size) {
    return file_ ? std::fread(bytes, 1, size, file_.get()) : 0;
}
