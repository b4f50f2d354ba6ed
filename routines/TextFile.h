#pragma once

#include "routines/InputFile.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

/// A text file, delivered on every platform as the instruments' own programs see it: a CR directly
/// before an LF is dropped (a lone CR stays, CR CR LF gives CR LF), and a Ctrl-Z byte (1A hex) ends
/// the file. A read error ends it, too. Closes by itself.
class TextFile {
public:
    TextFile() = default;
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;
    ~TextFile() = default;

    /// The longest line delivered, its line end included: 254 characters. A longer one comes in
    /// several pieces.
    static constexpr std::size_t kLongestLine = 254;
    static constexpr int kEnd = -1;

    /// False for an empty name, a file that is not there or may not be read, and a folder.
    bool Open(const std::string& name, const ByteSource& source = {});
    void Close();

    /// The next line with its line end, at most 254 characters; a NUL byte in it ends its text. The
    /// text is not copied and stays where it is until the next read. False at the end of the file.
    bool ReadLine(std::string_view& line);

    /// The next line without its last character, as most formats read it: that is the line end of
    /// an ordinary line, but the last real character of a file that ends without one, and of every
    /// piece of a long line but the last. Instruments end every line, so it is kept so, on purpose.
    bool ReadLineWithoutLast(std::string_view& line) {
        if (!ReadLine(line))
            return false;
        line.remove_suffix(line.empty() ? 0 : 1);
        return true;
    }

    /// The same into a text that an empty line leaves as it is: such a format reads the line before
    /// an empty one twice.
    bool ReadLineOrKeep(std::string& text) {
        std::string_view line;
        if (!ReadLineWithoutLast(line))
            return false;
        if (!line.empty())
            text = line;
        return true;
    }

    /// The next character as an unsigned char, or kEnd.
    int ReadChar() {
        if (end_ - position_ < 2)
            Fill();
        if (position_ == end_)
            return kEnd;
        const bool dropped =
            block_[position_] == '\r' && position_ + 1 < end_ && block_[position_ + 1] == '\n';
        position_ += dropped ? 2 : 1;
        return static_cast<unsigned char>(block_[position_ - 1]);
    }
    /// Steps back over the character that the last ReadChar gave. (It must have given one.)
    void StepBack() {
        if (position_ > 0)
            --position_;
    }

private:
    void Fill();

    InputFile file_;
    std::unique_ptr<char[]> block_; ///< a piece of the file, as it lies on the disk
    std::size_t position_ = 0;      ///< next byte to deliver
    std::size_t end_ = 0;           ///< end of the bytes read
    bool atEnd_ = true;             ///< the file gives nothing more
    bool sawNul_ = false;           ///< lines must be looked through for a NUL
};
