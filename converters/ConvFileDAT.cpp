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
    AggiungeJobDelFile();
    while (LeggeUnaRigaDAT() && !ended_)
        ConvertiRiga();
    file_.Close();
    return true;
}

bool CConvFileDAT::OpenFile() {
    return file_.Open(*fileName_);
}

/// An empty line leaves the line before it in place, which is then taken once more, on purpose: a
/// point on one line that an empty line follows stands twice.
bool CConvFileDAT::LeggeUnaRigaDAT() {
    return file_.ReadLineOrKeep(text_);
}

/// A file that ends inside a record completes it with the line before.
void CConvFileDAT::ConvertiRiga() {
    const std::string first = text_;
    if (first.starts_with('S')) {
        std::string_view fields = std::string_view(first).substr(1);
        pointName_ = NextField(fields);
        targetHeight_ = Metres(NextField(fields));
        ReadObservation(fields);
        pointCode_.clear();
        ConversioneP();
        return;
    }
    if (first == "END") {
        ended_ = true;
        return;
    }
    LeggeUnaRigaDAT();
    const std::string second = text_;
    LeggeUnaRigaDAT();
    std::string_view fields = second;
    if (CountFields(second) < kStationFields) {
        pointName_ = TrimBoth(NextField(fields));
        targetHeight_ = Metres(NextField(fields));
        ReadObservation(fields);
        pointCode_ = TrimBoth(text_);
        ConversioneP();
        return;
    }
    stationName_ = TrimBoth(first);
    instrumentHeight_ = Metres(NextField(fields));
    targetHeight_ = Metres(NextField(fields));
    pointName_ = TrimBoth(NextField(fields));
    ReadObservation(fields);
    pointCode_.clear();
    ConversioneS();
    if (stationName_ != pointName_)
        ConversioneP();
}

void CConvFileDAT::ReadObservation(std::string_view& fields) {
    slopeDistance_ = DoubleDaString(NextField(fields));
    verticalAngle_ = DoubleDaString(NextField(fields));
    horizontalAngle_ = DoubleDaString(NextField(fields));
}

void CConvFileDAT::ConversioneS() {
    AggiungeSta(stationName_, "", instrumentHeight_, kNoValue, kNoValue);
}

void CConvFileDAT::ConversioneP() {
    AggiungePun(pointName_, pointCode_, "", targetHeight_, DistanceOrNoValue(slopeDistance_),
                verticalAngle_, horizontalAngle_);
}
