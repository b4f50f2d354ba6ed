#pragma once

#include "routines/InputFile.h"
#include "routines/LineWatch.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

/// How lines are told apart.
enum class LineRules {
    /// As the instruments' own programs see them: a CR directly before an LF is dropped (a lone CR
    /// stays, CR CR LF gives CR LF), and a line has at most 254 characters, its line end included.
    Classic,
    /// As they were meant: any number of CR before an LF belong to the line end, any other CR is
    /// one; a line has up to 1 MiB. Each comes with a line end of LF, also where the file has none.
    Complete,
};

/// A text file, delivered alike on every platform. A Ctrl-Z byte (1A hex) ends the file, a NUL byte
/// the text of its line. A read error ends the file, too. Closes by itself.
class TextFile {
public:
    TextFile() = default;
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;
    ~TextFile() = default;

    /// The longest line delivered by the classic rules, its line end included, and by the complete
    /// ones, without it. A longer one comes in several pieces.
    static constexpr std::size_t kLongestLine = 254;
    static constexpr std::size_t kLongestCompleteLine = 1024UL * 1024;
    static constexpr int kEnd = -1;

    /// False for an empty name, a file that is not there or may not be read, and a folder.
    bool Open(const std::string& name, const ByteSource& source = {},
              LineRules rules = LineRules::Classic);
    void Close();
    /// Tells `watch` how the file is read, from now on. Borrowed; null: nobody.
    void TellTo(LineWatch* watch) { watch_ = watch; }
    /// Ends the reading where the format says so: what is left of the file is not delivered.
    void EndHere();

    /// The next line with its line end. The text is not copied and stays where it is until the next
    /// read. False at the end of the file.
    bool ReadLine(std::string_view& line) { return Next(line, LastCharacter::Kept); }

    /// The next line without its last character, as most formats read it: that is the line end of
    /// an ordinary line, but the last real character of a file that ends without one, and of every
    /// piece of a long line but the last. Instruments end every line, so it is kept so, on purpose.
    bool ReadLineWithoutLast(std::string_view& line) {
        if (!Next(line, LastCharacter::Lost))
            return false;
        line.remove_suffix(line.empty() ? 0 : 1);
        return true;
    }

    /// The same into a text that an empty line leaves as it is: such a format reads the line before
    /// an empty one twice. By the complete rules an empty line is empty.
    bool ReadLineOrKeep(std::string& text) {
        bool isKept = false;
        return ReadLineOrKeep(text, isKept);
    }
    /// Also tells whether the text stayed.
    bool ReadLineOrKeep(std::string& text, bool& isKept) {
        std::string_view line;
        if (!ReadLineWithoutLast(line))
            return false;
        isKept = line.empty() && rules_ == LineRules::Classic;
        if (!isKept)
            text = line;
        return true;
    }

    /// The next character as an unsigned char, or kEnd; by the complete rules every line end is an
    /// LF. For files whose records are no lines; who watches is told nothing of the lines.
    int ReadChar() {
        if (rules_ == LineRules::Complete)
            return ReadCompleteChar();
        if (end_ - position_ < 2)
            Fill();
        if (position_ == end_) {
            TellEnd();
            return kEnd;
        }
        const bool dropped =
            block_[position_] == '\r' && position_ + 1 < end_ && block_[position_ + 1] == '\n';
        position_ += dropped ? 2 : 1;
        return static_cast<unsigned char>(block_[position_ - 1]);
    }
    /// Reads a run of characters before the next `stop`, as ReadChar would one by one, into the
    /// room that is there, and gives their number. It may be shorter, also 0: what ReadChar gives
    /// next goes on with it.
    std::size_t ReadRun(char* to, std::size_t room, char stop);
    /// Steps back over the character that the last ReadChar gave. (It must have given one.)
    void StepBack() {
        if (rules_ == LineRules::Complete)
            --nextChar_;
        else if (position_ > 0)
            --position_;
    }

private:
    /// Whether who reads a line takes its last character for the line end.
    enum class LastCharacter { Kept, Lost };

    /// A line that is nothing but its text and a line end, whole in the block, is what nearly every
    /// line is.
    bool Next(std::string_view& line, LastCharacter last) {
        if (!isPlain_ || end_ - position_ <= kLongestLine) [[unlikely]]
            return NextPiece(line, last);
        char* const text = block_.get() + position_;
        const void* const lineFeed = std::memchr(text, '\n', kLongestLine);
        if (!lineFeed) [[unlikely]]
            return NextPiece(line, last);
        std::size_t length = static_cast<std::size_t>(static_cast<const char*>(lineFeed) - text);
        position_ += length + 1;
        if (length > 0 && text[length - 1] == '\r') {
            text[--length] = '\n'; // the line feed moves over the dropped CR; the text stays
        }
        line = {text, length + 1};
        if (watch_)
            watch_->LineBegins(line, ++number_);
        return true;
    }
    bool NextPiece(std::string_view& line, LastCharacter last);
    bool NextClassic(std::string_view& line);
    void SeeWhetherPlain();
    bool NextComplete(std::string_view& line);
    int ReadCompleteChar();
    bool FindLineEnd(std::size_t& length, std::size_t& taken);
    [[gnu::cold]] void EndAtNul(std::string_view& line);
    [[gnu::cold]] void Tell(std::string_view line, bool isEnded, LastCharacter last);
    void TellEnd();
    void Fill();
    std::size_t ReadBlock(char* bytes, std::size_t size);
    void LookBehindEnd(std::string_view bytes);

    InputFile file_;
    LineRules rules_ = LineRules::Classic;
    std::unique_ptr<char[]> block_; ///< a piece of the file, as it lies on the disk
    std::size_t capacity_ = 0;      ///< of the block
    std::size_t position_ = 0;      ///< next byte to deliver
    std::size_t end_ = 0;           ///< end of the bytes read
    bool atEnd_ = true;             ///< the file gives nothing more
    bool sawNul_ = false;           ///< lines must be looked through for a NUL
    bool isPlain_ = false;          ///< lines must be looked through for nothing but their end

    // By the complete rules.
    std::size_t searched_ = 0; ///< no LF lies before it, from the next byte on
    char covered_ = '\0';      ///< the byte that the line end of a piece stands on
    bool isCovered_ = false;
    std::string_view charLine_; ///< the line whose characters are given one by one
    std::size_t nextChar_ = 0;

    // For who watches.
    LineWatch* watch_ = nullptr;
    std::uint64_t bytesRead_ = 0;   ///< of the file
    std::uint64_t number_ = 0;      ///< of the line delivered last
    bool inLine_ = false;           ///< the next piece goes on with it
    bool isLong_ = false;           ///< that line came in pieces
    bool sawCr_ = false;            ///< a CR without LF: lines must be looked through for one
    std::uint64_t bytesBehind_ = 0; ///< the end of reading
    bool losesText_ = false;        ///< they are not padding alone
};
