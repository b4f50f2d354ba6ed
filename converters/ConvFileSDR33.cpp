// An SDR33 field file: fixed-width records behind a code of four characters, the fields 16 wide.
//
//   00NMSDR33V04-04.02     15-Mar-07 09:40 213111
//     header; its last six digits: angles (1 decimal degrees, 2 gon, 3 mils), lengths (1 metres,
//     2 feet), pressure, temperature, coordinates (1 north east, 2 east north), horizontal angles
//     (1 clockwise, 2 anticlockwise)
//   10NMVIA ROMA 12     121111                  job name
//   13TS15-Mar-07 09:44                         time stamp: the job's date
//   01NM:SET2C           012345...              instrument; how vertical angles are counted
//   02TP             1005000.000        1000.000        100.000         1.545           CHIODO
//     station: name, coordinates (3), instrument height, code
//   03NM1.600                                   target height
//   07TP             100             200123.45670000    0.00000000
//     backsight: station, name, azimuth, horizontal angle
//   08TP             2005100.000        1100.000        101.000         SPIGOLO
//     known point: name, coordinates (3), code
//   09F1             100             20125.417          98.76540000     123.45670000    SPIGOLO
//     observation: station, point, slope distance, vertical angle, horizontal angle, code
//
// A download has a frame: a line of STX before the records, one of ETX with a checksum behind them.

#include "converters/ConvFileSDR33.h"

#include "routines/Angles.h"
#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kFieldLength = 16;

constexpr Cause kOtherVersion = {RemarkKind::Unit,
                                 "a header (00NM) without SDR33 in it is read as one of SDR33"};
constexpr Cause kTimeNotFirst = {
    RemarkKind::NotRead,
    "a time stamp (13TS) that is not the first of its job, before its stations and points, is not "
    "read"};
constexpr Cause kBacksightElsewhere = {
    RemarkKind::NotRead, "a backsight (07) of another station than the current one is not read"};
constexpr Cause kOtherTargetHeight = {RemarkKind::NotRead,
                                      "target heights other than 03NM are not read"};
constexpr Cause kOtherObservation = {
    RemarkKind::NotRead,
    "observations other than 09F1, 09F2, 09MD and 09TP are not read: their points are not in the "
    "book"};
constexpr Cause kLineTooShort = {
    RemarkKind::Incomplete,
    "a record with fewer fields than it needs: those missing are empty or absent"};

} // namespace

struct CConvFileSDR33::Record {
    std::string_view code; ///< the whole one, or its type alone
    void (CConvFileSDR33::*handle)();
    std::size_t lastField; ///< that it needs, from 0
};

// The first row that fits counts.
constexpr CConvFileSDR33::Record CConvFileSDR33::kRecords[] = {
    {"00NM", &CConvFileSDR33::Header, 0},     {"10NM", &CConvFileSDR33::JobName, 0},
    {"13TS", &CConvFileSDR33::TimeStamp, 0},  {"01", &CConvFileSDR33::Instrument, 0},
    {"02", &CConvFileSDR33::WriteStation, 4}, {"03NM", &CConvFileSDR33::TargetHeight, 0},
    {"07", &CConvFileSDR33::Backsight, 3},    {"08", &CConvFileSDR33::WriteOrientationPoint, 3},
    {"09F1", &CConvFileSDR33::WritePoint, 4}, {"09F2", &CConvFileSDR33::WritePoint, 4},
    {"09MD", &CConvFileSDR33::WritePoint, 4}, {"09TP", &CConvFileSDR33::WritePoint, 4},
};

CConvFileSDR33::CConvFileSDR33(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileSDR33::~CConvFileSDR33() = default;

bool CConvFileSDR33::Esegui() {
    preparation_.rules = ReadingRules::Complete();
    if (!OpenFile())
        return false;
    AddJobOfFile();
    return ForEachLine([this] { return file_->ReadLineWithoutLast(line_); },
                       [this] { ConvertLine(); });
}

void CConvFileSDR33::ConvertLine() {
    const std::string_view code = line_.substr(0, kSdrCodeLength);
    const Cause* const unread = UnreadSdrRecord(code);
    if (!unread) {
        if (!IsSdrFrame(line_))
            Skip();
        return;
    }
    const auto* const record = std::ranges::find_if(
        kRecords, [&](const Record& each) { return code.starts_with(each.code); });
    if (record != std::end(kRecords)) {
        if (line_.size() <= kSdrCodeLength + (record->lastField * kFieldLength))
            Note(kLineTooShort);
        (this->*record->handle)();
    } else if (code.starts_with("03")) {
        Note(kOtherTargetHeight);
    } else if (code.starts_with("09")) {
        Note(kOtherObservation);
    } else {
        Note(*unread);
    }
}

void CConvFileSDR33::Header() {
    units_.ReadHeader(line_);
    if (!Contains(line_, "SDR33"))
        Note(kOtherVersion);
    if (keeper_)
        units_.TellHeader(*keeper_, true);
}

void CConvFileSDR33::Instrument() {
    units_.ReadInstrument(line_);
    Note(kSdrInstrument);
}

void CConvFileSDR33::JobName() {
    const std::string_view name = Field(0);
    if (firstJob_) {
        SetNomeAtJob(std::string(name));
        if (CJob* const job = CurrentJob())
            Tell(job);
        firstJob_ = false;
        return;
    }
    AggiungeJob(std::string(name), "", "", "");
    jobIsBegun_ = hasStation_ = false;
}

void CConvFileSDR33::TimeStamp() {
    if (jobIsBegun_)
        return Note(kTimeNotFirst);
    SetDataAtJob(std::string(TrimBoth(Piece(line_, kSdrCodeLength))));
    jobIsBegun_ = true;
}

void CConvFileSDR33::WriteStation() {
    AddStation(Field(0), Field(5), Length(4));
    const Place place = PlaceAt(1);
    if (CSta* const station = CurrentStation())
        SetPlace(*station, place);
}

void CConvFileSDR33::AddStation(std::string_view name, std::string_view code,
                                double instrumentHeight) {
    AggiungeSta(std::string(name), std::string(code), instrumentHeight, kNoValue, kNoValue);
    stationName_ = name;
    hasStation_ = jobIsBegun_ = true;
}

void CConvFileSDR33::TargetHeight() {
    targetHeight_ = Length(0);
}

/// A circle that was set to the azimuth needs no orientation.
void CConvFileSDR33::Backsight() {
    if (!hasStation_ || Field(0) != stationName_)
        return Note(kBacksightElsewhere);
    const double azimuth = units_.Gon(Number(2));
    const double angle = units_.HorizontalAngle(Number(3));
    CSta* const station = CurrentStation();
    if (station && IsPresent(azimuth) && IsPresent(angle) && azimuth != angle)
        station->SetAnCoAz(LimiteAng0_400(azimuth - angle));
}

void CConvFileSDR33::WriteOrientationPoint() {
    const std::string name(Field(0));
    const Place place = PlaceAt(1);
    knownPoints_.push_back({name, place});
    COri* const point = fieldBook_.AddOri(true);
    Tell(point);
    if (!point)
        return;
    point->SetNome(name);
    point->SetComm(std::string(Field(4)));
    SetPlace(*point, place);
}

void CConvFileSDR33::WritePoint() {
    const std::string_view station = Field(0);
    if (!station.empty() && (!hasStation_ || station != stationName_))
        AddStation(station, "", kNoValue);
    const std::string name(Field(1));
    Reading reading;
    reading.slopeDistance = Number(2);
    reading.zenithAngle = Number(3);
    reading.horizontalAngle = Number(4);
    const Place place = TakePlaceOf(name);
    const bool isKnown = IsPresent(place.x) || IsPresent(place.y) || IsPresent(place.z);
    const CPun* const before = LastPoint();
    AggiungePun(name, std::string(Field(5)), "", targetHeight_,
                units_.Applied(WithoutZeroDistance(reading)),
                isKnown ? Expected::Coordinates : Expected::Measurement);
    jobIsBegun_ = true;
    CPun* const point = LastPoint();
    if (point && point != before)
        SetPlace(*point, place);
}

/// The coordinates of the observation that comes next, where a record before it has its name.
CConvFileSDR33::Place CConvFileSDR33::TakePlaceOf(std::string_view name) {
    Place place;
    for (const KnownPoint& point : knownPoints_) {
        if (point.name == name)
            place = point.place;
    }
    knownPoints_.clear();
    return place;
}

std::string_view CConvFileSDR33::Field(std::size_t index) const {
    return TrimBoth(Piece(line_, kSdrCodeLength + index * kFieldLength, kFieldLength));
}

double CConvFileSDR33::Number(std::size_t index) {
    return ReadNumberOrNoValue(Field(index));
}

/// The coordinates in three fields, in the order that the header says.
CConvFileSDR33::Place CConvFileSDR33::PlaceAt(std::size_t index) {
    Place place{.x = Length(index + 1), .y = Length(index), .z = Length(index + 2)};
    if (units_.IsEastFirst())
        std::swap(place.x, place.y);
    return place;
}
