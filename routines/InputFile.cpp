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

bool InputFile::Open(const std::string& name, const ByteSource& source) {
    Close();
    if (name.empty())
        return false;
    stream_ = source.stream;
    if (source.bytes)
        memory_ = {source.bytes, source.size};
    else if (!stream_) {
        file_.reset(std::fopen(name.c_str(), "rb"));
        if (file_ && IsFolder(file_.get()))
            file_.reset();
        stream_ = file_.get();
    }
    return source.bytes || stream_;
}

void InputFile::Close() {
    file_.reset();
    stream_ = nullptr;
    memory_ = {};
}

std::size_t InputFile::Read(char* bytes, std::size_t size) {
    const std::size_t taken = memory_.copy(bytes, size);
    memory_.remove_prefix(taken);
    if (!stream_ || taken == size)
        return taken;
    return taken + std::fread(bytes + taken, 1, size - taken, stream_);
}
