#pragma once

#include <cstdint>
#include <string_view>

/// What the reader of a text file met in a piece of a line that it delivers.
struct LinePiece {
    std::string_view text;    ///< as it is delivered, its line end included
    std::uint64_t number = 0; ///< of its line, from 1; pieces of one line share it
    bool continues = false;   ///< not the first piece of its line
    bool isLong = false;      ///< the line has more characters than are delivered at once
    bool hasNul = false;      ///< a NUL ended the text before something else did
    bool hasLoneCr = false;   ///< a CR that belongs to no line end stands in it
    bool hasCrRun = false;    ///< it ends in several CR and an LF
    bool losesLast = false;   ///< it has no line end: its last character was taken for one
};

/// Somebody who wants to know how a text file was read. Who does not costs nothing.
class LineWatch {
public:
    LineWatch() = default;
    LineWatch(const LineWatch&) = delete;
    LineWatch& operator=(const LineWatch&) = delete;

    /// A whole line with its line end is about to be delivered, and nothing else was met in it:
    /// what nearly every line is, so it is only written down. The text stays until the next one.
    void LineBegins(std::string_view text, std::uint64_t number) {
        text_ = text;
        line_ = number;
        ++lines_;
        if (mustLook_ || text.front() <= ' ') [[unlikely]]
            LookAtLine();
    }
    /// Any other piece is about to be delivered; its text stays until the next one is.
    virtual void PieceBegins(const LinePiece& piece) = 0;
    /// Reading has ended though the file goes on, for so many bytes, and not all of them are
    /// padding (Ctrl-Z, NUL, line ends).
    virtual void EndsEarly(std::uint64_t bytes) = 0;
    /// A block of the file was read, the last of so many bytes; false ends the reading.
    virtual bool GoesOn(std::uint64_t bytesRead) = 0;

protected:
    ~LineWatch() = default;

    /// The same of a line that begins with a blank or a control character, and of one that was to
    /// be looked at.
    virtual void LookAtLine() = 0;

    std::string_view text_;   ///< of the current piece, as long as that lasts
    std::uint64_t line_ = 0;  ///< its number
    std::uint64_t lines_ = 0; ///< begun
    bool mustLook_ = true;    ///< the next line is not only to be written down
};
