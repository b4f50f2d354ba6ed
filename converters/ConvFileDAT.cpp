// A DAT file: records of one line (tagged "S") or of three, fields separated by single spaces.
//
//   100                                             station: its name,
//   1545 1600 101 25.417 98.7654 123.4567           instrument height, target height, first point,
//   CHIODO                                          its observation; a line that is not used
//   S102 1600 18.230 99.1234 130.5500               point on one line: name, target height, slope
//                                                   distance, zenith angle, horizontal angle
//   x                                               point on three lines: not used,
//   103 1600 12.004 97.5000 141.2000                the same fields,
//   SPIGOLO                                         code
//   END                                             nothing after it is read
//
// Heights are millimetres, distances metres, angles gon. The two records of three lines differ by
// how many fields their second line has.

#include "converters/ConvFileDAT.h"

#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>
#include <array>

namespace {

/// The second line of a station has at least this many fields.
constexpr std::ptrdiff_t kStationFields = 6;
constexpr std::ptrdiff_t kPointFields = 5;

// What is remarked on.
constexpr Cause kLineRepeats = {
    RemarkKind::Incomplete,
    "an empty line stands for the line before it, which is taken once more in its place"};
constexpr Cause kLastFieldRepeats = {
    RemarkKind::Incomplete,
    "a record with fewer fields than it needs: its last one stands for those missing"};
constexpr Cause kFieldsBehind = {RemarkKind::NotRead,
                                 "fields behind the last one that a record has are not read"};
constexpr Cause kCutShort = {RemarkKind::Incomplete,
                             "a record of three lines that the end of the file cuts short is "
                             "completed with the line before"};
constexpr Cause kNoSecondLine = {RemarkKind::Incomplete,
                                 "the second of a point's three lines is empty: it has no name, no "
                                 "distance, and angles of 0"};
constexpr Cause kFirstLine = {RemarkKind::NotRead,
                              "the text in the first of a point's three lines is not read"};
constexpr Cause kThirdLine = {RemarkKind::NotRead,
                              "the text in the third of a station's three lines is not read"};
constexpr Cause kShifted = {RemarkKind::NotRead,
                            "values in a line of a record of three lines that has none are not "
                            "read: the lines of the file may be shifted"};

/// The text before the first space. The last field has none, and is given again and again: a
/// missing field repeats it.
std::string_view NextField(std::string_view& text) {
    std::string_view field = text;
    CutAt(text, ' ', field);
    return field;
}

/// One more than there are spaces; one in the first column does not count.
std::ptrdiff_t CountFields(std::string_view line) {
    return std::ranges::count(Piece(line, 1), ' ') + 1;
}

} // namespace

CConvFileDAT::CConvFileDAT(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileDAT::~CConvFileDAT() = default;

bool CConvFileDAT::Esegui() {
    if (!OpenFile())
        return false;
    AddJobOfFile();
    return ForEachLine([this] { return ReadLine(); }, [this] { ConvertLine(); });
}

/// An empty line leaves the line before it in place, which is then taken once more, so that a point
/// of one line stands twice, on purpose: a job that is converted again must have as many points as
/// the field book that a host made of it before. By the complete rules it is an empty line.
bool CConvFileDAT::ReadLine() {
    bool isKept = false;
    if (!file_->ReadLineOrKeep(text_, isKept))
        return false;
    if (isKept)
        Note(kLineRepeats);
    else
        textLine_ = LineNumber();
    return true;
}

void CConvFileDAT::ConvertLine() {
    if (text_.starts_with('S')) {
        const AtLine line(*this, textLine_);
        WritePoint(PointOf(std::string_view(text_).substr(1)), "");
    } else if (text_ == "END") {
        file_->EndHere();
    } else if (!text_.empty() || Rules().lines == LineRules::Classic) {
        ThreeLines();
    }
}

/// A file that ends inside a record completes it with the line before.
void CConvFileDAT::ThreeLines() {
    const std::string first = text_;
    const std::uint64_t firstLine = textLine_;
    const bool hasSecond = ReadLine();
    const std::string second = text_;
    const std::uint64_t secondLine = textLine_;
    const bool isStation = CountFields(second) >= kStationFields;
    Point point = isStation ? PointOfStation(second) : PointOf(second);
    point.name = TrimBoth(point.name);
    if (second.empty())
        Note(kNoSecondLine);
    if (!ReadLine() || !hasSecond)
        Note(kCutShort);

    const std::string_view station = TrimBoth(first);
    if (isStation) {
        NoteUnused(kThirdLine, text_, textLine_);
        const AtLine line(*this, firstLine);
        AggiungeSta(std::string(station), "", point.instrumentHeight, kNoValue, kNoValue);
    } else {
        NoteUnused(kFirstLine, first, firstLine);
    }
    const AtLine line(*this, secondLine);
    if (!isStation)
        WritePoint(point, TrimBoth(text_));
    else if (station != point.name) // else its first point is the station itself
        WritePoint(point, "");
}

/// What a line says of a point: name, target height, slope distance, zenith and horizontal angle.
CConvFileDAT::Point CConvFileDAT::PointOf(std::string_view line) {
    std::array<std::string_view, kPointFields> fields;
    std::string_view rest = line;
    std::ranges::generate(fields, [&] { return NextField(rest); });
    if (IsHeard())
        JudgeLine(line, fields);
    return {.name = fields[0],
            .targetHeight = Metres(fields[1]),
            .reading = ReadingOf(std::span(fields).last<3>())};
}

/// The same of a station's first one: instrument height, target height, name, reading.
CConvFileDAT::Point CConvFileDAT::PointOfStation(std::string_view line) {
    std::array<std::string_view, kStationFields> fields;
    std::string_view rest = line;
    std::ranges::generate(fields, [&] { return NextField(rest); });
    if (IsHeard())
        JudgeLine(line, fields);
    return {.name = fields[2],
            .instrumentHeight = Metres(fields[0]),
            .targetHeight = Metres(fields[1]),
            .reading = ReadingOf(std::span(fields).last<3>())};
}

double CConvFileDAT::Metres(std::string_view millimetres) {
    return ReadDividedNumber(millimetres, 1000);
}

Reading CConvFileDAT::ReadingOf(std::span<const std::string_view, 3> fields) {
    return WithoutZeroDistance({.slopeDistance = ReadNumber(fields[0]),
                                .zenithAngle = ReadNumber(fields[1]),
                                .horizontalAngle = ReadNumber(fields[2])});
}

void CConvFileDAT::WritePoint(const Point& point, std::string_view code) {
    AggiungePun(std::string(point.name), std::string(code), "", point.targetHeight, point.reading);
}

/// Remarks on the fields of the current line.
void CConvFileDAT::JudgeLine(std::string_view line, std::span<const std::string_view> fields) {
    const bool isWhole = std::ranges::count(line, ' ') + 1 >= std::ssize(fields);
    const std::size_t last = fields.size() - 1;
    JudgeFields({fields[1], fields[last - 2], fields[last - 1], fields[last]}, isWhole,
                kLastFieldRepeats);
    const char* const end = fields[last].data() + fields[last].size();
    if (!TrimBoth({end, static_cast<std::size_t>(line.data() + line.size() - end)}).empty())
        Note(kFieldsBehind);
}

/// Remarks on a line of a record that is not read, where it has a text or even values.
void CConvFileDAT::NoteUnused(const Cause& cause, std::string_view text, std::uint64_t line) {
    if (!keeper_ || TrimBoth(text).empty())
        return;
    std::string_view rest = text;
    NextField(rest);
    double unused = 0;
    const bool holdsValues =
        CountFields(text) >= kPointFields && NumberAtStart(NextField(rest), unused) > 0;
    keeper_->NoteAt(holdsValues ? kShifted : cause, line);
}
