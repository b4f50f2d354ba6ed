#pragma once

#include "routines/InputFile.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace convfile {

/// The beginning of a file, read once and kept, so that it can be looked at before the file is
/// converted, also where it comes from a stream.
class Sample {
public:
    /// False where the file cannot be opened.
    bool Open(const std::string& name, const ByteSource& source);
    /// The first bytes, at most so many, up to a line end unless they are the whole file.
    std::string_view First(std::size_t size);
    /// True where First gave the whole file.
    bool IsWhole(std::size_t size) const { return atEnd_ && bytes_.size() <= size; }
    /// The whole file's bytes, for who converts it now. Good as long as the sample.
    ByteSource Source() const;

private:
    ByteSource source_;
    InputFile file_;
    std::string bytes_;
    bool atEnd_ = false;
};

} // namespace convfile
