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

namespace {

/// The second line of a station has at least this many fields.
constexpr std::ptrdiff_t kStationFields = 6;

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

double Metres(std::string_view millimetres) {
    return DividedNumber(millimetres, 1000);
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
/// the field book that a host made of it before.
bool CConvFileDAT::ReadLine() {
    return !ended_ && file_->ReadLineOrKeep(text_);
}

/// A file that ends inside a record completes it with the line before.
void CConvFileDAT::ConvertLine() {
    if (text_.starts_with('S')) {
        OneLinePoint(std::string_view(text_).substr(1));
        return;
    }
    if (text_ == "END") {
        ended_ = true;
        return;
    }
    const std::string first = text_;
    ReadLine();
    const std::string second = text_;
    ReadLine();
    if (CountFields(second) < kStationFields)
        PointWithCode(second, text_);
    else
        StationWithPoint(first, second);
}

void CConvFileDAT::OneLinePoint(std::string_view fields) {
    const std::string_view name = NextField(fields);
    const double targetHeight = Metres(NextField(fields));
    WritePoint(name, "", targetHeight, fields);
}

void CConvFileDAT::PointWithCode(std::string_view fields, std::string_view code) {
    const std::string_view name = TrimBoth(NextField(fields));
    const double targetHeight = Metres(NextField(fields));
    WritePoint(name, TrimBoth(code), targetHeight, fields);
}

/// The first point of a station is left out where it is the station itself.
void CConvFileDAT::StationWithPoint(std::string_view name, std::string_view fields) {
    const std::string_view station = TrimBoth(name);
    const double instrumentHeight = Metres(NextField(fields));
    const double targetHeight = Metres(NextField(fields));
    const std::string_view point = TrimBoth(NextField(fields));
    AggiungeSta(std::string(station), "", instrumentHeight, kNoValue, kNoValue);
    if (station != point)
        WritePoint(point, "", targetHeight, fields);
}

/// `reading`: slope distance, zenith angle and horizontal angle, yet to be cut.
void CConvFileDAT::WritePoint(std::string_view name, std::string_view code, double targetHeight,
                              std::string_view reading) {
    const double slopeDistance = DoubleDaString(NextField(reading));
    const double zenithAngle = DoubleDaString(NextField(reading));
    const double horizontalAngle = DoubleDaString(NextField(reading));
    AggiungePun(std::string(name), std::string(code), "", targetHeight,
                WithoutZeroDistance({slopeDistance, zenithAngle, horizontalAngle}));
}
