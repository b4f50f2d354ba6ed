#pragma once

#include "app/Interrupt.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>
#include <streambuf>

namespace convfile::app {

/// A file that results go into. A regular one is written beside its place, and takes that when it
/// is whole; until then, and where it never gets so far, what was there stays as it was. A link
/// stays a link: the file that it leads to is replaced. A device or a pipe is written to.
class OutputFile {
public:
    OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    /// False where it cannot be written.
    bool Open(const std::filesystem::path& target);
    std::ostream& Stream() { return stream_; }
    /// Lets it take its place; false where something of it could not be written.
    bool Finish();
    /// Forgets it.
    void Discard();

private:
    class Buffer;

    bool CreateBeside();
    void Forget();

    std::filesystem::path target_; ///< behind all links
    std::filesystem::path unfinished_;
    Leftover leftover_;
    std::unique_ptr<Buffer> buffer_;
    std::filebuf device_;
    std::ostream stream_{nullptr};
};

} // namespace convfile::app
