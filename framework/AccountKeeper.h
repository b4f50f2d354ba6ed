#pragma once

#include "framework/Account.h"
#include "framework/Cause.h"
#include "framework/Export.h"
#include "routines/LineWatch.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class CConvListener;
class CJob;
class COri;
class CPun;
class CSta;
struct Problem;

/// Keeps the account of a file while it is read: the reader tells its lines, the writer its
/// records, the converter what it alone knows. However much is remarked, it keeps a count and
/// twenty line numbers for each cause. The account is given when this goes away.
class CONVFILE_API AccountKeeper final : public LineWatch {
public:
    /// All are borrowed, and may be null.
    AccountKeeper(FileAccount* account, CConvListener* listener, Problem* problem)
        : account_(account), listener_(listener), problem_(problem) {}
    AccountKeeper(const AccountKeeper&) = delete;
    AccountKeeper& operator=(const AccountKeeper&) = delete;
    ~AccountKeeper();

    // What the reader tells.
    void PieceBegins(const LinePiece& piece) override;
    void EndsEarly(std::uint64_t bytes) override;
    bool GoesOn(std::uint64_t bytesRead) override;

    /// The file could be opened.
    void Opened() { opened_ = true; }
    /// The next record of a file without lines.
    void RecordBegins();
    /// The next row of a database; rows have no number.
    void RowBegins() { PieceBegins({.text = "row"}); }
    /// The lines from the current one to `last` go on with what the current one is.
    void GoesOnTo(std::uint64_t last);

    /// The current line stands for an earlier one, which is read again: what is told until the next
    /// line is told of that one.
    void Repeats(std::uint64_t line) { line_ = line; }

    /// Remarks on the current line.
    void Note(const Cause& cause) { NoteAt(cause, line_); }
    void NoteAt(const Cause& cause, std::uint64_t line) {
        Tally* const tally = known_[Place(cause)];
        if (tally && tally->cause == &cause && tally->Repeats(line)) [[likely]]
            return;
        Count(cause, line);
    }
    /// The same with a text of its own, made for this file.
    void NoteText(RemarkKind kind, std::string text, std::uint64_t line, std::uint64_t count = 1);
    /// Remarks on the current line, which is skipped; a blank one is not, and makes no remark.
    void Skip(const Cause& cause);
    /// The current line is skipped without a word of its own.
    void SkipSilently() { skipped_ = mustLook_ = true; }

    /// A field that holds a number, or something else where a number belongs.
    void CountNumber(bool isNumber) { ++(isNumber ? numbers_ : noNumbers_); }

    /// The current line; 0 before the first.
    std::uint64_t Line() const { return line_; }
    /// The line of the records that are written: the current one, unless it was set.
    std::uint64_t RecordLine() const { return recordLine_ != kCurrent ? recordLine_ : line_; }
    /// Records that are written from now on come from that line; kCurrent: each from the current.
    /// Gives what held before.
    std::uint64_t SetRecordLine(std::uint64_t line) {
        const std::uint64_t before = recordLine_;
        recordLine_ = line;
        return before;
    }
    static constexpr std::uint64_t kCurrent = ~std::uint64_t{0};

    // What the writer tells.
    void Written(CJob& job);
    void Written(CSta& station);
    void Written(CPun& point);
    void Written(COri& point);
    /// A line of the cadastral document.
    void WrittenLine();

    /// What the book's values really are, where the file's unit is left as it stands.
    void AnglesAre(std::string_view unit) { angleUnit_ = unit; }
    void LengthsAre(std::string_view unit) { lengthUnit_ = unit; }

private:
    static constexpr std::size_t kMostLines = 20;

    /// What was met of one cause.
    struct Tally {
        const Cause* cause = nullptr; ///< null: the text is its own
        Remark remark = {};
        std::uint64_t lastLine = 0; ///< told; that of the remark is the largest
        bool isFull = false;        ///< it has all the line numbers it keeps

        /// Counts it where it is told again, and only to be counted: of the same line, or of one
        /// behind all others when it has its line numbers.
        bool Repeats(std::uint64_t line) {
            if (isFull && line > remark.lastLine) {
                lastLine = remark.lastLine = line;
                ++remark.count;
                return true;
            }
            return line == lastLine && line != 0;
        }
    };

    /// Where a cause's tally is looked for first: causes lie one behind the other in tables.
    static std::size_t Place(const Cause& cause) {
        return reinterpret_cast<std::uintptr_t>(&cause) / alignof(Cause) % kKnown;
    }
    static constexpr std::size_t kKnown = 64;

    void Count(const Cause& cause, std::uint64_t line);
    static void Add(Tally& tally, std::uint64_t line);
    void LookAtLine() override;
    void NotePiece(const LinePiece& piece);
    void EndPiece();
    void EndLine();
    void NoteEmpty();
    bool IsBlank() const;
    bool PieceIsRead() const { return !skipped_ && !isMereEnd_; }

    FileAccount* account_;
    CConvListener* listener_;
    Problem* problem_;

    bool opened_ = false;
    bool inPiece_ = false;
    bool isMereEnd_ = false; ///< it is the line end of a long line, and no more
    bool skipped_ = false;   ///< this piece
    bool lineRead_ = false;  ///< a piece of this line before it was read
    std::uint64_t skippedLines_ = 0;
    std::uint64_t blankLines_ = 0;
    std::uint64_t numbers_ = 0;
    std::uint64_t noNumbers_ = 0;
    std::uint64_t recordLine_ = kCurrent;

    std::uint64_t jobs_ = 0;
    const CJob* lastJob_ = nullptr; ///< a job that is told again is still one
    std::uint64_t records_ = 0;     ///< stations, points, and lines of the document
    std::uint64_t orientationPoints_ = 0;
    std::uint64_t documentLines_ = 0;

    std::vector<Tally> tallies_;
    std::array<Tally*, kKnown> known_{}; ///< counted last, each in its place
    std::string_view angleUnit_;
    std::string_view lengthUnit_;
};
