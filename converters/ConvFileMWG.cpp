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

/// A station's number, and behind it the columns of its height.
constexpr std::size_t kShortestStation = kStationNumber.first + kStationNumber.count + kLastColumns;

// What is remarked on.
constexpr Cause kRecordRepeats = {
    RemarkKind::Unknown, "a line that is no record of the format is skipped, but writes the "
                         "station or point before it again"};
constexpr Cause kEmptyRepeats = {RemarkKind::Incomplete,
                                 "an empty line writes the station or point before it again"};
constexpr Cause kMoreWords = {RemarkKind::NotRead,
                              "words behind the slope distance of an observation are not read"};
constexpr Cause kColumnsMissing = {
    RemarkKind::Incomplete,
    "a line that ends before its last columns: what they hold is 0, or the end of the line"};

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
    if (line_.empty() && Rules().lines == LineRules::Complete)
        return;
    AnalizzaRigaMWG();
    SalvaRigaMWG();
}

void CConvFileMWG::AnalizzaRigaMWG() {
    const std::string_view word = Piece(line_, kWord);
    if (Equals(word, "11"))
        Observation();
    else if (!Equals(word, "41") || !Information())
        Repetition();
}

void CConvFileMWG::Observation() {
    const std::string_view number = Piece(line_, kPointNumber);
    const std::string_view distance = Piece(line_, kSlopeDistance);
    const std::string_view zenithAngle = Piece(line_, kZenithAngle);
    const std::string_view horizontalAngle = Piece(line_, kHorizontalAngle);
    if (IsHeard())
        JudgeFields({distance, zenithAngle, horizontalAngle, number}, !distance.empty(),
                    kColumnsMissing);
    if (line_.size() > kSlopeDistance.first + kSlopeDistance.count)
        Note(kMoreWords);
    pointName_ = NameOfNumber(number);
    reading_ = {.slopeDistance = ReadDividedNumber(distance, kPerMetre),
                .zenithAngle = ReadDividedNumber(zenithAngle, kPerGon),
                .horizontalAngle = ReadDividedNumber(horizontalAngle, kPerGon)};
    pointReady_ = true;
    stationReady_ = false;
    recordLine_ = LineNumber();
}

/// False for a marker that says nothing.
bool CConvFileMWG::Information() {
    const std::string_view markerText = Piece(line_, kMarker);
    const double marker = DoubleDaString(markerText);
    const auto isShort = [this](std::size_t columns) { return line_.size() < columns; };
    if (marker == kMarkerStation) {
        if (isShort(kShortestStation))
            Note(kColumnsMissing);
        stationName_ = NameOfNumber(Piece(line_, kStationNumber));
        instrumentHeight_ = ReadDividedNumber(LastColumns(line_), kPerMetre);
        stationReady_ = true;
        pointReady_ = false;
        recordLine_ = LineNumber();
        return true;
    }
    if (marker == kMarkerTargetHeight || marker == -kMarkerTargetHeight) {
        if (isShort(kTargetHeight.first + 1))
            Note(kColumnsMissing);
        targetHeight_ = ReadDividedNumber(Piece(line_, kTargetHeight), kPerMetre);
    } else if (marker == kMarkerNoTarget) {
        targetHeight_ = 0;
    } else if (marker == kMarkerTargetAtEnd) {
        CheckNumber(markerText);
        if (isShort(kMarker.first + kMarker.count + kLastColumns))
            Note(kColumnsMissing);
        targetHeight_ = ReadDividedNumber(LastColumns(line_), kPerMetre);
    } else {
        return false;
    }
    stationReady_ = pointReady_ = false;
    return true;
}

/// A line that leaves what is ready as it is.
void CConvFileMWG::Repetition() {
    if (!stationReady_ && !pointReady_)
        Skip();
    else if (TrimBoth(line_).empty())
        Note(kEmptyRepeats);
    else
        Skip(kRecordRepeats);
}

/// A number of a point or station as its name: without decimals.
std::string CConvFileMWG::NameOfNumber(std::string_view digits) {
    std::string name = StringDaDouble(ReadNumber(digits), 15, 0);
    StringTrimBoth(name);
    return name;
}

/// Every line writes what is ready: one that changes nothing (another word, an unknown marker, an
/// empty line) writes the same station or point again, on purpose: hosts take points of equal name
/// and reading for one, and a job that is converted again must have as many. By the complete rules
/// an empty line repeats nothing.
void CConvFileMWG::SalvaRigaMWG() {
    const AtLine line(*this, recordLine_);
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
