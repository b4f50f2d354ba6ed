#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>

/// A file open for reading, byte by byte as it lies on the disk; closed when this goes away.
class InputFile {
public:
    /// False for an empty name, a file that is not there or may not be read, and a folder.
    bool Open(const std::string& name);
    void Close() { file_.reset(); }
    /// Reads up to `size` bytes; fewer (or none) at the end of the file and after a read error.
    std::size_t Read(char* bytes, std::size_t size);

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> file_;
};
