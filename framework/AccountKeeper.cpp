#include "framework/AccountKeeper.h"

#include "framework/Problem.h"
#include "host/ConvListener.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace {

constexpr Cause kLongLine = {RemarkKind::LongLine,
                             "a line with more characters than a line of the format can have is "
                             "read in pieces, each as a line of its own"};
constexpr Cause kNoLineEnd = {
    RemarkKind::LineEnd,
    "the last line has no line end: its last character is taken for one and is not read"};
constexpr Cause kLoneCr = {
    RemarkKind::LineEnd,
    "a CR without an LF ends no line: what it parts is read as one line (--complete reads lines)"};
constexpr Cause kCrRun = {
    RemarkKind::LineEnd,
    "more than one CR before the LF: all but one stay at the end of the line's text"};
constexpr Cause kNul = {RemarkKind::Nul,
                        "a NUL byte ends the text of its line: what is behind it is not read"};

} // namespace

std::string_view NameOf(RemarkKind kind) {
    constexpr std::array<std::string_view, 14> kNames = {
        "unknown",        "not-read",     "unit",     "no-number",  "incomplete",
        "no-measurement", "long-line",    "line-end", "ends-early", "nul",
        "declined",       "other-format", "empty",    "database"};
    return kNames[static_cast<std::size_t>(kind)];
}

AccountKeeper::~AccountKeeper() {
    EndLine();
    if (!account_)
        return;
    Guarded(problem_, [this] {
        if (opened_ && records_ == 0)
            NoteEmpty();
        account_->lines = lines_;
        account_->skipped = skippedLines_;
        account_->read = lines_ - skippedLines_;
        account_->blank = blankLines_;
        account_->numbers = numbers_;
        account_->noNumbers = noNumbers_;
        // Of the same line and kind by their texts: compilers differ in which field is read first.
        std::ranges::sort(tallies_, {}, [](const Tally& tally) {
            const auto& lines = tally.remark.lines;
            return std::make_tuple(lines.empty() ? kCurrent : lines.front(), tally.remark.kind,
                                   std::string_view(tally.remark.text));
        });
        for (Tally& tally : tallies_)
            account_->remarks.push_back(std::move(tally.remark));
        if (!angleUnit_.empty())
            account_->angleUnit = angleUnit_;
        if (!lengthUnit_.empty())
            account_->lengthUnit = lengthUnit_;
    });
}

/// A line that is only written down leaves what this sets as it is: it is read.
void AccountKeeper::LookAtLine() {
    EndLine();
    inPiece_ = true;
    isMereEnd_ = mustLook_ = false;
    if (text_.front() <= ' ' && IsBlank())
        ++blankLines_;
}

void AccountKeeper::PieceBegins(const LinePiece& piece) {
    if (!piece.continues)
        EndLine();
    else
        EndPiece();
    text_ = piece.text;
    line_ = piece.number;
    lines_ += piece.continues ? 0 : 1;
    blankLines_ += !piece.continues && IsBlank() ? 1 : 0;
    inPiece_ = mustLook_ = true;
    isMereEnd_ = piece.continues && IsBlank();
    if (piece.isLong || piece.hasNul || piece.hasLoneCr || piece.hasCrRun || piece.losesLast)
        [[unlikely]]
        NotePiece(piece);
}

void AccountKeeper::NotePiece(const LinePiece& piece) {
    if (piece.isLong)
        Note(kLongLine);
    if (piece.hasNul)
        Note(kNul);
    if (piece.hasLoneCr)
        Note(kLoneCr);
    if (piece.hasCrRun)
        Note(kCrRun);
    if (piece.losesLast)
        Note(kNoLineEnd);
}

void AccountKeeper::RecordBegins() {
    PieceBegins({.text = "record", .number = line_ + 1});
}

void AccountKeeper::GoesOnTo(std::uint64_t last) {
    while (line_ < last) {
        const bool skipped = skipped_;
        PieceBegins({.text = text_, .number = line_ + 1});
        skipped_ = skipped;
    }
}

void AccountKeeper::EndsEarly(std::uint64_t bytes) {
    NoteText(RemarkKind::EndsEarly,
             "what ends the file stands before its end: " + std::to_string(bytes) +
                 (bytes == 1 ? " byte behind it is not read" : " bytes behind it are not read"),
             line_);
}

bool AccountKeeper::GoesOn(std::uint64_t bytesRead) {
    if (!listener_ || listener_->Progress(bytesRead))
        return true;
    if (problem_)
        problem_->Note("cancelled");
    return false;
}

/// A piece that was skipped leaves its line skipped, unless another is read. The mere line end of a
/// long line reads nothing.
void AccountKeeper::EndPiece() {
    lineRead_ = lineRead_ || (inPiece_ && PieceIsRead());
    inPiece_ = skipped_ = false;
}

void AccountKeeper::EndLine() {
    skippedLines_ += inPiece_ && !lineRead_ && !PieceIsRead() ? 1 : 0;
    inPiece_ = skipped_ = lineRead_ = false;
}

bool AccountKeeper::IsBlank() const {
    return text_.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

void AccountKeeper::Skip(const Cause& cause) {
    if (IsBlank())
        return;
    skipped_ = mustLook_ = true;
    Note(cause);
}

void AccountKeeper::Count(const Cause& cause, std::uint64_t line) {
    Tally*& known = known_[Place(cause)];
    const auto found = std::ranges::find(tallies_, &cause, &Tally::cause);
    if (found == tallies_.end()) {
        known_ = {}; // the tallies may move
        known = &tallies_.emplace_back(
            Tally{&cause, {.kind = cause.kind, .text = std::string(cause.text)}});
    } else {
        known = &*found;
    }
    Add(*known, line);
}

void AccountKeeper::Add(Tally& tally, std::uint64_t line) {
    auto& lines = tally.remark.lines;
    if (line == 0) {
        ++tally.remark.count;
        return;
    }
    if (line == tally.lastLine)
        return;
    tally.lastLine = line;
    if (line > tally.remark.lastLine) { // nearly always: lines come in their order
        tally.remark.lastLine = line;
        ++tally.remark.count;
        if (!tally.isFull)
            lines.push_back(line);
        tally.isFull = lines.size() == kMostLines;
        return;
    }
    const auto place = std::ranges::lower_bound(lines, line);
    if (place != lines.end() && *place == line)
        return;
    ++tally.remark.count;
    if (lines.size() == kMostLines && place == lines.end())
        return;
    lines.insert(place, line);
    lines.resize(std::min(lines.size(), kMostLines));
    tally.isFull = lines.size() == kMostLines;
}

void AccountKeeper::NoteText(RemarkKind kind, std::string text, std::uint64_t line,
                             std::uint64_t count) {
    const auto found = std::ranges::find_if(tallies_, [&](const Tally& tally) {
        return !tally.cause && tally.remark.kind == kind && tally.remark.text == text;
    });
    Tally* tally = found != tallies_.end() ? &*found : nullptr;
    known_ = {}; // the tallies may move
    if (!tally)
        tally = &tallies_.emplace_back(Tally{nullptr, {.kind = kind, .text = std::move(text)}});
    if (line != 0)
        Add(*tally, line);
    else
        tally->remark.count += count;
}

void AccountKeeper::NoteEmpty() {
    std::string found = "there is no station and no point in the file: it has ";
    const auto counted = [](std::uint64_t count, const char* one, const char* many) {
        return std::to_string(count) + " " + (count == 1 ? one : many);
    };
    found += counted(lines_, "line", "lines") + ", " + std::to_string(skippedLines_) + " skipped";
    if (jobs_ > 0)
        found += ", and " + counted(jobs_, "job", "jobs");
    if (orientationPoints_ > 0)
        found += ", and " + counted(orientationPoints_, "orientation point", "orientation points");
    NoteText(RemarkKind::Empty, std::move(found), 0);
}

void AccountKeeper::Written(CJob& job) {
    jobs_ += &job != lastJob_ ? 1 : 0;
    lastJob_ = &job;
    if (listener_)
        listener_->JobWritten(job, RecordLine());
}

void AccountKeeper::Written(CSta& station) {
    ++records_;
    if (listener_)
        listener_->StationWritten(station, RecordLine());
}

void AccountKeeper::Written(CPun& point) {
    ++records_;
    if (listener_)
        listener_->PointWritten(point, RecordLine());
}

void AccountKeeper::Written(COri& point) {
    ++orientationPoints_;
    if (listener_)
        listener_->OrientationPointWritten(point, RecordLine());
}

void AccountKeeper::WrittenLine() {
    ++records_;
    if (listener_)
        listener_->LineWritten(documentLines_, RecordLine());
    ++documentLines_;
}
