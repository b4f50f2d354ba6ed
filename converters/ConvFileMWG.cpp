// An MWG file: words in fixed columns, told by the two characters that a line begins with.
//
//   123456789012345678901234567890123456789012345678901234567890123
//   41....-00009999        00000100                 000001545       station 100, height 1.545 m
//   41....-00000999                       000001600                 target height 1.600 m
//   11....+00000101 21.322+12345670 22.322+09876540 31..00+00025417
//
// "11" is an observation: point number, horizontal angle and zenith angle in 1/100000 gon, slope
// distance in millimetres. "41" carries what its marker (columns 7-15) says: -9999 a station, -999
// or 999 a target height, 0 a target height at the end of the line, -500 a target height of 0.

#include "converters/ConvFileMWG.h"

#include "routines/Numbers.h"
#include "routines/Text.h"

namespace {

constexpr Columns kWord = {0, 2};
constexpr Columns kMarker = {6, 9};
constexpr Columns kPointNumber = {7, 8};
constexpr Columns kHorizontalAngle = {22, 9};
constexpr Columns kZenithAngle = {38, 9};
constexpr Columns kSlopeDistance = {54, 9};
constexpr Columns kStationNumber = {23, 8};
constexpr Columns kTargetHeight = {38, 9};
constexpr std::size_t kLastColumns = 9;

constexpr double kMarkerStation = -9999;
constexpr double kMarkerTargetHeight = 999; ///< of either sign
constexpr double kMarkerNoTarget = -500;
constexpr double kMarkerTargetAtEnd = 0;

constexpr double kPerGon = 100000;
constexpr double kPerMetre = 1000;

/// The last columns of a line; the whole of a shorter one.
std::string_view LastColumns(std::string_view line) {
    return line.size() > kLastColumns ? line.substr(line.size() - kLastColumns) : line;
}

/// A number of a point or station as its name: without decimals.
std::string NameOfNumber(std::string_view digits) {
    std::string name = StringDaDouble(DoubleDaString(digits), 15, 0);
    StringTrimBoth(name);
    return name;
}

} // namespace

CConvFileMWG::CConvFileMWG(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileMWG::~CConvFileMWG() = default;

bool CConvFileMWG::Esegui() {
    if (!OpenFile())
        return false;
    AddJobOfFile();
    return ForEachLine([this] { return LeggeUnaRigaMWG(); }, [this] { ConvertLine(); });
}

bool CConvFileMWG::LeggeUnaRigaMWG() {
    return file_->ReadLineWithoutLast(line_);
}

void CConvFileMWG::ConvertLine() {
    AnalizzaRigaMWG();
    SalvaRigaMWG();
}

void CConvFileMWG::AnalizzaRigaMWG() {
    const std::string_view word = Piece(line_, kWord);
    if (word == "11")
        Observation();
    else if (word == "41")
        Information();
}

void CConvFileMWG::Observation() {
    pointName_ = NameOfNumber(Piece(line_, kPointNumber));
    reading_ = {.slopeDistance = DividedNumber(Piece(line_, kSlopeDistance), kPerMetre),
                .zenithAngle = DividedNumber(Piece(line_, kZenithAngle), kPerGon),
                .horizontalAngle = DividedNumber(Piece(line_, kHorizontalAngle), kPerGon)};
    pointReady_ = true;
    stationReady_ = false;
}

void CConvFileMWG::Information() {
    const double marker = DoubleDaString(Piece(line_, kMarker));
    if (marker == kMarkerStation) {
        stationName_ = NameOfNumber(Piece(line_, kStationNumber));
        instrumentHeight_ = DividedNumber(LastColumns(line_), kPerMetre);
        stationReady_ = true;
        pointReady_ = false;
        return;
    }
    if (marker == kMarkerTargetHeight || marker == -kMarkerTargetHeight)
        targetHeight_ = DividedNumber(Piece(line_, kTargetHeight), kPerMetre);
    else if (marker == kMarkerNoTarget)
        targetHeight_ = 0;
    else if (marker == kMarkerTargetAtEnd)
        targetHeight_ = DividedNumber(LastColumns(line_), kPerMetre);
    else
        return;
    stationReady_ = pointReady_ = false;
}

/// Every line writes what is ready: one that changes nothing (another word, an unknown marker, an
/// empty line) writes the same station or point again, on purpose: hosts take points of equal name
/// and reading for one, and a job that is converted again must have as many.
void CConvFileMWG::SalvaRigaMWG() {
    if (stationReady_)
        AggiungiStazioneMWG();
    if (pointReady_)
        AggiungiPuntoMWG();
}

void CConvFileMWG::AggiungiStazioneMWG() {
    AggiungeSta(stationName_, "", instrumentHeight_, kNoValue, kNoValue);
}

void CConvFileMWG::AggiungiPuntoMWG() {
    AggiungePun(pointName_, "", "", targetHeight_, WithoutZeroDistance(reading_));
}
