#pragma once

#include "routines/Numbers.h"

#include <cstddef>
#include <memory>
#include <ostream>
#include <string_view>

/// A buffer in front of a stream, for results that are written piece by piece.
class OutputBuffer {
public:
    explicit OutputBuffer(std::ostream& stream) : stream_(stream) {}
    OutputBuffer(const OutputBuffer&) = delete;
    OutputBuffer& operator=(const OutputBuffer&) = delete;
    ~OutputBuffer() { Flush(); }

    void Put(char c) {
        if (used_ == kSize)
            Empty();
        buffer_[used_++] = c;
    }
    void Write(std::string_view text) {
        if (text.size() >= kSize - used_) [[unlikely]] {
            WriteLong(text);
            return;
        }
        text.copy(buffer_.get() + used_, text.size());
        used_ += text.size();
    }
    /// The fewest digits that read back (ShortestNumber).
    void WriteNumber(double value) {
        if (kSize - used_ < kShortestRoom) [[unlikely]]
            Empty();
        char* const begin = buffer_.get() + used_;
        used_ += static_cast<std::size_t>(WriteShortest(begin, value) - begin);
    }
    /// Hands everything on to the stream and further to the system.
    void Flush();
    /// True once something could not be written.
    bool Failed() const { return !stream_; }

private:
    static constexpr std::size_t kSize = 64UL * 1024;

    void Empty();
    void WriteLong(std::string_view text);

    std::ostream& stream_;
    std::unique_ptr<char[]> buffer_ = std::make_unique_for_overwrite<char[]>(kSize);
    std::size_t used_ = 0;
};
