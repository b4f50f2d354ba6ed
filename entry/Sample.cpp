#include "entry/Sample.h"

#include <algorithm>

namespace convfile {

namespace {

/// Most files are far smaller than the sample may be.
constexpr std::size_t kStep = 64UL * 1024;

} // namespace

bool Sample::Open(const std::string& name, const ByteSource& source) {
    source_ = source;
    return file_.Open(name, source);
}

std::string_view Sample::First(std::size_t size) {
    while (bytes_.size() <= size && !atEnd_) { // one byte more, to see whether there is one
        const std::size_t had = bytes_.size();
        const std::size_t wanted = std::min(size + 1 - had, kStep);
        bytes_.resize(had + wanted);
        const std::size_t read = file_.Read(bytes_.data() + had, wanted);
        bytes_.resize(had + read);
        atEnd_ = read < wanted;
    }
    const std::string_view first = std::string_view(bytes_).substr(0, size);
    if (first.size() == bytes_.size())
        return first;
    const std::size_t lineEnd = first.find_last_of("\r\n");
    return lineEnd == std::string_view::npos ? first : first.substr(0, lineEnd + 1);
}

ByteSource Sample::Source() const {
    if (source_.bytes || !source_.stream)
        return source_;
    ByteSource both = ByteSource::Memory(bytes_);
    both.stream = source_.stream;
    return both;
}

} // namespace convfile
