#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

/// Where the bytes of a file come from. As it is, from the file of the name; otherwise from what is
/// given here, and the name is only its name. With both, the stream goes on where the bytes end.
/// Borrowed: it must stay until the file was read.
struct ByteSource {
    const char* bytes = nullptr; ///< in memory, `size` of them
    std::size_t size = 0;
    std::FILE* stream = nullptr; ///< an open binary stream, read from where it stands, never closed

    static ByteSource Memory(std::string_view text) {
        return {.bytes = text.empty() ? "" : text.data(), .size = text.size()};
    }
    static ByteSource Stream(std::FILE* stream) { return {.stream = stream}; }
};

/// A file open for reading, byte by byte as it lies there; closed when this goes away.
class InputFile {
public:
    /// False for an empty name, a file that is not there or may not be read, and a folder.
    bool Open(const std::string& name, const ByteSource& source = {});
    void Close();
    /// Reads up to `size` bytes; fewer (or none) at the end of the file and after a read error.
    std::size_t Read(char* bytes, std::size_t size);

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> file_; ///< opened here
    std::FILE* stream_ = nullptr;             ///< what is read, behind the memory; or null
    std::string_view memory_;                 ///< what is left of it
};
