// A DTM2 file: comma-separated records with a numeric type in their second field. What stands
// before the first comma does not count; lines that begin with "2" are skipped.
//
//   1,0,M,S1,CHIODO,1.545,
//     station on a known point: units, name, code, instrument height
//   1,1,M,S2,CHIODO,5000.000,1000.000,100.000,
//     station by coordinates: units, name, code, north, east, height
//   1,2,FD,101,SPIGOLO,82.021,90.0000,88.5000,5.2,
//     observation: units, name, code, slope distance, horizontal angle, zenith angle, target height
//   1,2,M,102,PALO,5003.250,1012.500,101.870,-,
//     point by coordinates: units, name, code, north, east, height, and a "-" in the place of the
//     target height (so a negative target height makes coordinates of a reading)
//
// Units: an "F" means feet, a "D" degrees; otherwise lengths are metres and angles gon. Coordinates
// are always metres. Every field is closed by a comma; text after the last one is no field.

#include "converters/ConvFileDTM2.h"

#include "host/NoValue.h"
#include "routines/Angles.h"
#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>
#include <cstddef>

namespace {

/// Metres per foot as this format's instruments round it.
constexpr double kMetresPerFoot = 0.3048006;

constexpr int kNoType = -1;
constexpr int kStationOnPoint = 0;
constexpr int kStationByCoordinates = 1;
constexpr int kObservation = 2;

// Field 0 holds the units, 1 the name, 2 the code; the others depend on the type.
constexpr std::size_t kUnits = 0;
constexpr std::size_t kName = 1;
constexpr std::size_t kCode = 2;

/// How many fields a record of each type has.
constexpr std::size_t kFieldsOf[] = {4, 6, 7};

/// All that the field with the units may hold.
constexpr std::string_view kKnownUnits = "MFGD ";

constexpr Cause kBeginsWith2 = {RemarkKind::Unknown, "a line that begins with 2 is skipped"};
constexpr Cause kNoDigit = {
    RemarkKind::Unknown,
    "a line whose type is no digit is no record, but becomes a station all the same"};
constexpr Cause kOtherType = {RemarkKind::Unknown,
                              "a record of another type than 0, 1 and 2 is skipped"};
constexpr Cause kNotClosed = {
    RemarkKind::Incomplete,
    "text behind the last comma of a record closes no field: it is not read"};
constexpr Cause kOtherUnits = {
    RemarkKind::Unit,
    "units other than F, D, M and G are not applied: lengths are metres and angles gon but for "
    "an F or D among them"};
constexpr Cause kCoordinatesInFeet = {RemarkKind::Unit,
                                      "coordinates of a record in feet are taken as metres"};
constexpr Cause kNegativeHeight = {
    RemarkKind::NoNumber,
    "a minus sign in the target height makes the reading a point by coordinates"};

std::string Text(std::string_view field) {
    return std::string(field);
}

} // namespace

CConvFileDTM2::CConvFileDTM2(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileDTM2::~CConvFileDTM2() = default;

bool CConvFileDTM2::Esegui() {
    if (!OpenFile())
        return false;
    AddJobOfFile();
    return ForEachLine([this] { return LeggeUnaRigaDTM2(); }, [this] { ConvertLine(); });
}

bool CConvFileDTM2::LeggeUnaRigaDTM2() {
    return file_->ReadLineWithoutLast(line_);
}

void CConvFileDTM2::ConvertLine() {
    if (line_.size() >= 2 && line_.front() == '2')
        Skip(kBeginsWith2);
    else if (line_.size() < 2 || !SeparaCampi(SeparaTipoDato()))
        Skip();
}

/// Drops what stands before the first comma; the type is the character behind it, 0 where that is
/// no digit.
int CConvFileDTM2::SeparaTipoDato() {
    std::string_view before;
    if (!CutAt(line_, ',', before))
        return kNoType;
    return IntDaStringNullZero(line_.substr(0, 1));
}

/// Drops the type and takes the fields, untrimmed; false where the line has no second comma.
bool CConvFileDTM2::SeparaCampi(int type) {
    std::string_view typeField;
    if (!CutAt(line_, ',', typeField))
        return false;
    fields_.fill({});
    std::size_t closed = 0;
    while (closed < fields_.size() && CutAt(line_, ',', fields_[closed]))
        ++closed;
    if (!typeField.starts_with(static_cast<char>('0' + type)))
        Skip(kNoDigit);
    else if (IsHeard())
        CheckFields(type, closed);
    if (type == kStationOnPoint)
        LeggiPntStaz();
    else if (type == kStationByCoordinates)
        LeggiXYZStaz();
    else if (type == kObservation && Contains(fields_[6], "-"))
        LeggiCoordPnt();
    else if (type == kObservation)
        LeggiPunto();
    return true;
}

void CConvFileDTM2::CheckFields(int type, std::size_t closed) {
    if (type > kObservation) {
        Skip(kOtherType);
        return;
    }
    const std::size_t needed = kFieldsOf[static_cast<std::size_t>(type)];
    const bool byCoordinates =
        type == kStationByCoordinates || (type == kObservation && Contains(fields_[6], "-"));
    const auto isFilled = [](std::string_view field) { return !TrimBoth(field).empty(); };
    if (closed < needed)
        Note(kFieldsMissing);
    if (isFilled(line_))
        Note(closed < fields_.size() ? kNotClosed : kMoreFields);
    if (std::any_of(fields_.begin() + static_cast<std::ptrdiff_t>(needed), fields_.end(), isFilled))
        Note(kMoreFields);
    if (fields_[kUnits].find_first_not_of(kKnownUnits) != std::string_view::npos)
        Note(kOtherUnits);
    if (byCoordinates && Contains(fields_[kUnits], "F"))
        Note(kCoordinatesInFeet);
    if (type == kObservation && byCoordinates && TrimBoth(fields_[6]) != "-")
        Note(kNegativeHeight);
    if (type == kObservation && !byCoordinates && (fields_[4].empty() || fields_[5].empty()))
        Note(kAngleMissing);
}

/// The same name and height again is the same set-up going on.
void CConvFileDTM2::LeggiPntStaz() {
    const double height = Length(fields_[3]);
    if (CurrentStationIs(fields_[kName]) && CurrentStation()->GetAltStr() == height)
        return;
    AggiungeSta(Text(fields_[kName]), Text(fields_[kCode]), height, kNoValue, kNoValue);
    stationPresent_ = true;
}

void CConvFileDTM2::LeggiXYZStaz() {
    if (!CurrentStationIs(fields_[kName]))
        AggiungeSta(Text(fields_[kName]), Text(fields_[kCode]), 0, kNoValue, kNoValue);
    if (CSta* const station = CurrentStation()) {
        station->SetCoord(Coordinate(fields_[4]), Coordinate(fields_[3]), Coordinate(fields_[5]));
        station->SetAnCoAz(0);
    }
    stationPresent_ = true;
}

void CConvFileDTM2::LeggiPunto() {
    if (!stationPresent_)
        NeedStation();
    AggiungePun(Text(fields_[kName]), Text(fields_[kCode]), "", Length(fields_[6]),
                WithoutZeroDistance({.slopeDistance = Length(fields_[3]),
                                     .zenithAngle = Angle(fields_[5]),
                                     .horizontalAngle = Angle(fields_[4])}));
}

/// The point's observation is the field book's to derive from its coordinates.
void CConvFileDTM2::LeggiCoordPnt() {
    if (!CurrentStation() || !stationPresent_)
        NeedStation();
    const CPun* const before = LastPoint();
    AggiungePun(Text(fields_[kName]), Text(fields_[kCode]), "", 0, Reading{},
                Expected::Coordinates);
    CPun* const added = LastPoint();
    if (added == before)
        return;
    added->SetCoordEtCalcMisure(fieldBook_.GetCalcolaMisure(), Coordinate(fields_[4]),
                                Coordinate(fields_[3]), Coordinate(fields_[5]),
                                fieldBook_.GetCalcDsOr(), kNoValue, kNoValue);
}

bool CConvFileDTM2::CurrentStationIs(std::string_view name) {
    const CSta* const station = CurrentStation();
    return station && station->GetNome() == name;
}

void CConvFileDTM2::NeedStation() {
    AggiungeSta("", "", kNoValue, kNoValue, kNoValue);
    stationPresent_ = true;
}

double CConvFileDTM2::Coordinate(std::string_view field) {
    return FiniteOrNoValue(ReadNumber(field));
}

double CConvFileDTM2::Length(std::string_view field) {
    const double length = ReadNumber(field);
    return IsPresent(length) && Contains(fields_[kUnits], "F") ? length * kMetresPerFoot : length;
}

double CConvFileDTM2::Angle(std::string_view field) {
    const double angle = ReadNumber(field);
    return IsPresent(angle) && Contains(fields_[kUnits], "D") ? GonFromDegrees(angle) : angle;
}
