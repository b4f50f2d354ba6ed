// A DTM file: every value stands on a line of its own, groups of them behind a keyword line. What a
// line means follows from its place in the group.
//
//   @JN           job: 4 lines
//   VIA ROMA        0 job name
//   NULL
//   ROSSI           2 operator
//   A               3 "A": points carry zenith angle and slope distance;
//                     anything else: height difference and horizontal distance
//   @ST           station: 13 lines
//   NULL
//   'S1             1 name behind a mark of one character
//   ...
//   1545            5 instrument height, millimetres
//   ...
//   CHIODO         12 code
//   @SS           side shot: 22 lines
//   NULL
//   '101            1 name behind a mark of one character
//   ...
//   1600            7 target height, millimetres
//   NULL
//   123.4567        9 horizontal angle, gon
//   98.7654        10 zenith angle, gon         or   height difference, metres
//   25.417         11 slope distance, metres    or   horizontal distance, metres
//   ...
//   SPIGOLO        21 code
//
// "NULL" is an empty value. Lines between the groups are skipped.

#include "converters/ConvFileDTM.h"

#include "host/NoValue.h"
#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>
#include <span>

namespace {

constexpr std::size_t kKeywordLength = 3;

// The values of a group.
constexpr std::size_t kName = 0;
constexpr std::size_t kOperatorOrCode = 1;
constexpr std::size_t kHeight = 2;
constexpr std::size_t kHorizontalAngle = 3;
constexpr std::size_t kVertical = 4;
constexpr std::size_t kDistance = 5;
constexpr std::size_t kMode = 6;   ///< of the job, good for the points that follow
constexpr std::size_t kUnused = 7; ///< lines that become no value

/// A line of a group that is kept: its place and the value it becomes.
struct Kept {
    std::size_t line;
    std::size_t value;
};

constexpr Kept kJobLines[] = {{0, kName}, {2, kOperatorOrCode}, {3, kMode}};
constexpr Kept kStationLines[] = {{1, kName}, {5, kHeight}, {12, kOperatorOrCode}};
constexpr Kept kPointLines[] = {{1, kName},      {7, kHeight},    {9, kHorizontalAngle},
                                {10, kVertical}, {11, kDistance}, {21, kOperatorOrCode}};

constexpr Cause kOtherGroup = {
    RemarkKind::NotRead,
    "a group behind another keyword than @JN, @ST and @SS is not read, nor the lines that "
    "follow"};
/// What numbers, dates and times are written with.
constexpr std::string_view kOfNumbers = "0123456789+-.:/ ";
constexpr Cause kOtherNumbers = {
    RemarkKind::NotRead,
    "numbers and times of a group without a place in the book (coordinates, orientations, "
    "atmosphere) are not read"};
constexpr Cause kOtherTexts = {RemarkKind::NotRead,
                               "texts of a group without a place in the book are not read"};
constexpr Cause kKeywordAsValue = {
    RemarkKind::Incomplete,
    "a keyword in the midst of a group is taken for one of its values: that group has too few "
    "lines and what the keyword opens is lost"};
constexpr Cause kNoMark = {RemarkKind::NotRead,
                           "the first character of a name stands for a mark and is not read"};
constexpr Cause kReducedMode = {
    RemarkKind::Unit,
    "a job's mode that is no single letter: its points' values are taken for height difference "
    "and horizontal distance"};

constexpr double kMillimetres = 1000;

/// Names are written behind a mark of one character, whatever it is.
std::string WithoutMark(const std::string& name) {
    return std::string(Piece(name, 1));
}

/// True where the character in the mark's place could as well be the name's own.
bool LacksMark(std::string_view name) {
    if (name.empty())
        return false;
    const char mark = UpperAscii(name.front());
    return (mark >= 'A' && mark <= 'Z') || (mark >= '0' && mark <= '9');
}

} // namespace

struct CConvFileDTM::Group {
    std::string_view keyword;
    std::size_t lines;
    std::span<const Kept> kept;
    bool hasMark; ///< before the name
    void (CConvFileDTM::*write)();
};

constexpr CConvFileDTM::Group CConvFileDTM::kGroups[] = {
    {"@JN", 4, kJobLines, false, &CConvFileDTM::AggiungiLav},
    {"@ST", 13, kStationLines, true, &CConvFileDTM::AggiungiSta},
    {"@SS", 22, kPointLines, true, &CConvFileDTM::AggiungiPun},
};

CConvFileDTM::CConvFileDTM(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileDTM::~CConvFileDTM() = default;

/// Adds no job of its own: stations before the first "@JN" go into the last job that is there.
bool CConvFileDTM::Esegui() {
    return OpenFile() &&
           ForEachLine([this] { return LeggeUnaRigaDTM(); }, [this] { ConvertLine(); });
}

void CConvFileDTM::ConvertLine() {
    const auto* const group = std::ranges::find(kGroups, keyword_, &Group::keyword);
    if (group != std::end(kGroups))
        ReadGroup(*group);
    else if (keyword_.starts_with('@'))
        Note(kOtherGroup);
    else
        Skip();
}

/// The line, trimmed; "NULL" is empty. Past the end of the file a line is empty, keyword and all.
bool CConvFileDTM::LeggeUnaRigaDTM() {
    line_ = keyword_ = {};
    if (!file_->ReadLineWithoutLast(line_))
        return false;
    line_ = TrimBoth(line_);
    keyword_ = line_.substr(0, kKeywordLength);
    if (line_ == "NULL")
        line_ = {};
    return true;
}

/// A group cut short by the end of the file is written with the values it has.
void CConvFileDTM::ReadGroup(const Group& group) {
    const AtLine at(*this, LineNumber());
    for (std::size_t line = 0; line < group.lines; ++line) {
        const bool isThere = LeggeUnaRigaDTM();
        const auto kept = std::ranges::find(group.kept, line, &Kept::line);
        const std::size_t place = kept == group.kept.end() ? kUnused : kept->value;
        if (!isThere)
            NoteAtRecord(kRecordCutShort);
        else if (IsHeard())
            CheckLine(group, place);
        if (place == kUnused)
            continue;
        std::string& value = place == kMode ? mode_ : values_[place];
        value = line_;
    }
    (this->*group.write)();
    ClearValues();
}

/// Remarks on a line of a group, by the value that it becomes.
void CConvFileDTM::CheckLine(const Group& group, std::size_t value) {
    if (std::ranges::find(kGroups, keyword_, &Group::keyword) != std::end(kGroups))
        Note(kKeywordAsValue);
    else if (value == kUnused && !line_.empty())
        Note(line_.find_first_not_of(kOfNumbers) == std::string_view::npos ? kOtherNumbers
                                                                           : kOtherTexts);
    else if (value == kName && group.hasMark && LacksMark(line_))
        Note(kNoMark);
    else if (value == kMode && line_.size() != 1)
        Note(kReducedMode);
    else if (value >= kHeight && value <= kDistance)
        CheckNumber(line_);
}

void CConvFileDTM::AggiungiLav() {
    AggiungeJob(values_[kName], values_[kOperatorOrCode], "", "");
}

/// Temperature and pressure are not in the file and are 0, not absent, on purpose: its distances
/// are corrected, and a host corrects only where it finds a temperature and a pressure.
void CConvFileDTM::AggiungiSta() {
    AggiungeSta(WithoutMark(values_[kName]), values_[kOperatorOrCode],
                DividedNumber(values_[kHeight], kMillimetres), 0, 0);
}

void CConvFileDTM::AggiungiPun() {
    if (values_[kHorizontalAngle].empty() || (mode_ == "A" && values_[kVertical].empty()))
        NoteAtRecord(kAngleMissing);
    const double distance = DoubleDaString(values_[kDistance]);
    const double vertical = DoubleDaString(values_[kVertical]);
    const double horizontalAngle = DoubleDaString(values_[kHorizontalAngle]);
    const Reading reading = mode_ == "A" ? Reading{distance, vertical, horizontalAngle}
                                         : ReducedReading(distance, vertical, horizontalAngle);
    AggiungePun(WithoutMark(values_[kName]), values_[kOperatorOrCode], "",
                DividedNumber(values_[kHeight], kMillimetres), WithoutZeroDistance(reading));
}

void CConvFileDTM::ClearValues() {
    for (std::string& value : values_)
        value.clear();
}
