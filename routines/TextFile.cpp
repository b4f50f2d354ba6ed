#include "routines/TextFile.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t kBlock = 64UL * 1024;
constexpr char kCtrlZ = '\x1A';

/// Bytes that a line must be cut from: 254 characters, and a CR that may turn out not to be one.
constexpr std::size_t kLineBytes = TextFile::kLongestLine + 1;

const char* Find(const char* bytes, char wanted, std::size_t size) {
    return static_cast<const char*>(std::memchr(bytes, wanted, size));
}

} // namespace

bool TextFile::Open(const std::string& name, const ByteSource& source) {
    Close();
    if (!file_.Open(name, source))
        return false;
    block_ = std::make_unique_for_overwrite<char[]>(kLineBytes + kBlock);
    atEnd_ = false;
    return true;
}

void TextFile::Close() {
    file_.Close();
    block_.reset();
    position_ = end_ = 0;
    atEnd_ = true;
    sawNul_ = false;
}

bool TextFile::ReadLine(std::string_view& line) {
    if (end_ - position_ < kLineBytes)
        Fill();
    if (position_ == end_)
        return false;
    char* const text = block_.get() + position_;
    const std::size_t bytes = std::min(end_ - position_, kLineBytes);
    const char* const lineFeed = Find(text, '\n', bytes);
    std::size_t taken = lineFeed ? static_cast<std::size_t>(lineFeed - text) + 1 : bytes;
    std::size_t length = taken;
    if (lineFeed && taken > 1 && text[taken - 2] == '\r') {
        text[taken - 2] = '\n'; // the line feed moves over the dropped CR; the text stays in place
        --length;
    } else if (length > kLongestLine) {
        taken = length = kLongestLine;
    }
    position_ += taken;
    line = {text, length};
    if (sawNul_)
        line = line.substr(0, line.find('\0'));
    return true;
}

/// Moves what is left to the front of the block and adds the next piece of the file behind it.
void TextFile::Fill() {
    if (atEnd_)
        return;
    std::memmove(block_.get(), block_.get() + position_, end_ - position_);
    end_ -= position_;
    position_ = 0;

    char* const fresh = block_.get() + end_;
    std::size_t size = file_.Read(fresh, kBlock);
    atEnd_ = size < kBlock;
    if (const char* const ctrlZ = Find(fresh, kCtrlZ, size)) {
        size = static_cast<std::size_t>(ctrlZ - fresh);
        atEnd_ = true;
    }
    sawNul_ = sawNul_ || Find(fresh, '\0', size) != nullptr;
    end_ += size;
}
