#include "routines/OutputBuffer.h"

void OutputBuffer::Flush() {
    Empty();
    stream_.flush();
}

void OutputBuffer::Empty() {
    stream_.write(buffer_.get(), static_cast<std::streamsize>(used_));
    used_ = 0;
}

void OutputBuffer::WriteLong(std::string_view text) {
    Empty();
    if (text.size() >= kSize) {
        stream_.write(text.data(), static_cast<std::streamsize>(text.size()));
        return;
    }
    Write(text);
}
