// An SDR2 field file: fixed-width records behind a code of four characters.
//
//   10NMVIA ROMA 12                                        job name
//   13TS15-Mar-07 09:44                                    time stamp: the job's date
//   02TP0100                              1.545     CHIODO
//     station: name (4), coordinates (3 x 10, not read), instrument height (10), code
//   03NM1.600                                              target height
//   09F10100010125.417    98.7654   123.4567  SPIGOLO
//     observation: station (4), point (4), slope distance, zenith angle, horizontal angle (10
//     each), code
//
// Values are taken as they are: metres and gon. Other records are skipped.

#include "converters/ConvFileSDR2.h"

#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kCodeLength = 4;
constexpr std::size_t kNameLength = 4;
constexpr std::size_t kNumberLength = 10;
/// The station's name and its three coordinates.
constexpr std::size_t kBeforeInstrumentHeight = kNameLength + 3 * kNumberLength;

/// Cuts a field of that length off the front.
std::string_view TakeColumns(std::string_view& rest, std::size_t length) {
    const std::string_view field = rest.substr(0, length);
    rest = Piece(rest, length);
    return field;
}

constexpr Cause kRecordRepeats = {
    RemarkKind::Incomplete,
    "an empty line stands for the record before it, which is taken once more in its place"};
constexpr Cause kJobWithoutTime = {
    RemarkKind::Incomplete,
    "a job name (10NM) without a time stamp (13TS) behind it adds no job: its name is not read"};
constexpr Cause kTimeWithoutJob = {
    RemarkKind::NotRead, "a time stamp (13TS) without a job name (10NM) before it is not read"};
constexpr Cause kInstrument = {RemarkKind::NotRead,
                               "the instrument's name and number (01) are not read"};
constexpr Cause kStationPlace = {RemarkKind::NotRead,
                                 "the coordinates of stations (02) are not read"};

/// Records that are known by the type they begin with, and not read.
struct OtherRecord {
    std::string_view type;
    Cause cause;
};
constexpr OtherRecord kOtherRecords[] = {
    {"02",
     {RemarkKind::NotRead, "stations other than 02TP, 02IC, 02RS, 02KI and 02CO are not read"}},
    {"03", {RemarkKind::NotRead, "target heights other than 03NM and 03IC are not read"}},
    {"05", {RemarkKind::NotRead, "atmosphere records (05) are not read"}},
    {"06", {RemarkKind::NotRead, "scale factors (06) are not read"}},
    {"07", {RemarkKind::NotRead, "backsights (07: azimuth and angle) are not read"}},
    {"08", {RemarkKind::NotRead, "coordinates of points (08) are not read"}},
    {"09",
     {RemarkKind::NotRead,
      "observations other than 09F1 and 09F2 are not read: their points are not in the book"}},
    {"11", {RemarkKind::NotRead, "reduced observations (11) are not read"}},
    {"12", {RemarkKind::NotRead, "sets (12) are not read"}},
    {"13", {RemarkKind::NotRead, "notes (13) other than time stamps are not read"}},
};
constexpr Cause kOtherTypes = {RemarkKind::NotRead,
                               "records of other types (04, 10, 14 to 19) are not read"};

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
    return c >= 'A' && c <= 'Z';
}

} // namespace

struct CConvFileSDR2::Record {
    std::string_view code;
    void (CConvFileSDR2::*handle)(std::string_view rest);
};

constexpr CConvFileSDR2::Record CConvFileSDR2::kRecords[] = {
    {"00NM", &CConvFileSDR2::Header},           {"10NM", &CConvFileSDR2::JobName},
    {"13TS", &CConvFileSDR2::TimeStamp},        {"02TP", &CConvFileSDR2::Station},
    {"02IC", &CConvFileSDR2::Station},          {"02RS", &CConvFileSDR2::Station},
    {"02KI", &CConvFileSDR2::Station},          {"02CO", &CConvFileSDR2::Station},
    {"03NM", &CConvFileSDR2::TargetHeight},     {"03IC", &CConvFileSDR2::TargetHeight},
    {"09F1", &CConvFileSDR2::ConversioneRigaP}, {"09F2", &CConvFileSDR2::ConversioneRigaP},
};

CConvFileSDR2::CConvFileSDR2(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileSDR2::~CConvFileSDR2() = default;

bool CConvFileSDR2::Esegui() {
    if (!OpenFile())
        return false;
    ForEachLine([this] { return LeggeUnaRigaSDR2(); }, [this] { ConvertiRiga(); });
    NoteUnusedJob();
    return true;
}

/// An empty line leaves the line before it in place, which is then converted again, on purpose: a
/// job that is converted again must have as many points as the field book that a host made of it
/// before.
bool CConvFileSDR2::LeggeUnaRigaSDR2() {
    bool isKept = false;
    if (!file_->ReadLineOrKeep(text_, isKept))
        return false;
    repeats_ = isKept && !text_.empty();
    if (!repeats_) {
        textLine_ = LineNumber();
    } else if (keeper_) {
        if (text_.starts_with("02") || text_.starts_with("09"))
            Note(kRecordRepeats);
        keeper_->Repeats(textLine_);
    }
    return true;
}

void CConvFileSDR2::ConvertiRiga() {
    const std::string_view line = text_;
    const std::string_view code = TrimBoth(line.substr(0, kCodeLength));
    const auto* const record = std::ranges::find(kRecords, code, &Record::code);
    if (record != std::end(kRecords))
        (this->*record->handle)(Piece(line, kCodeLength));
    else if (code.starts_with("01"))
        Instrument();
    else if (IsHeard())
        NoteOther(code);
}

/// A record that is not read, or a line that is none.
void CConvFileSDR2::NoteOther(std::string_view code) {
    if (IsSdrFrame(text_))
        return;
    const auto* const other =
        std::ranges::find(kOtherRecords, code.substr(0, 2), &OtherRecord::type);
    const bool isRecord =
        code.size() == kCodeLength && IsLetter(code[2]) && (IsLetter(code[3]) || IsDigit(code[3]));
    if (!isRecord)
        Skip();
    else if (other != std::end(kOtherRecords))
        Note(other->cause);
    else if (code.starts_with("04") || (code[0] == '1' && IsDigit(code[1])))
        Note(kOtherTypes);
    else
        Skip();
}

void CConvFileSDR2::JobName(std::string_view rest) {
    if (!repeats_)
        NoteUnusedJob();
    jobName_ = TrimBoth(rest);
    jobPending_ = true;
    jobLine_ = textLine_;
}

/// Remarks on a job name that came to nothing.
void CConvFileSDR2::NoteUnusedJob() {
    if (jobPending_ && keeper_)
        keeper_->NoteAt(kJobWithoutTime, jobLine_);
}

void CConvFileSDR2::Header(std::string_view /*rest*/) {
    SdrUnits units;
    units.ReadHeader(text_);
    if (Rules().appliesUnits)
        units_ = units;
    if (keeper_)
        units.TellHeader(*keeper_, Rules().appliesUnits);
}

void CConvFileSDR2::Instrument() {
    SdrUnits units = units_;
    units.ReadInstrument(text_);
    if (Rules().appliesUnits)
        units_ = units;
    if (keeper_)
        units.TellInstrument(*keeper_, Rules().appliesUnits);
    Note(kInstrument);
}

/// A time stamp without a job name before it adds no job.
void CConvFileSDR2::TimeStamp(std::string_view rest) {
    const AtLine atName(*this, jobPending_ ? jobLine_ : LineNumber());
    if (jobPending_)
        AggiungeJob(jobName_, "", "", std::string(TrimBoth(rest)));
    else if (!repeats_)
        Note(kTimeWithoutJob);
    jobPending_ = false;
}

void CConvFileSDR2::Station(std::string_view rest) {
    rest = TrimLeft(rest);
    const std::string_view name = rest.substr(0, kNameLength);
    const std::string_view places = Piece(rest, kNameLength, 3 * kNumberLength);
    rest = Piece(rest, kBeforeInstrumentHeight);
    const double instrumentHeight = NumberIn(TakeColumns(rest, kNumberLength));
    AggiungeSta(std::string(name), std::string(TrimRight(rest)), units_.Metres(instrumentHeight),
                kNoValue, kNoValue);
    if (!TrimBoth(places).empty())
        ReadPlace(places);
}

/// The coordinates of the current station, in the order that the header says.
void CConvFileSDR2::ReadPlace(std::string_view fields) {
    if (!Rules().readsCoordinates)
        return Note(kStationPlace);
    const auto next = [&] {
        return units_.Metres(ReadNumberOrNoValue(TakeColumns(fields, kNumberLength)));
    };
    Place place{.x = kNoValue, .y = next(), .z = kNoValue};
    place.x = next();
    place.z = next();
    if (units_.IsEastFirst())
        std::swap(place.x, place.y);
    if (CSta* const station = CurrentStation())
        SetPlace(*station, place);
}

/// A number that its record needs.
double CConvFileSDR2::NumberIn(std::string_view field) {
    if (IsHeard() && TrimBoth(field).empty())
        Note(kFieldsMissing);
    return ReadNumber(field);
}

/// Cuts a number off the front. The next field counts from the first character behind it that is
/// not blank, not from a fixed column, on purpose: numbers stand at the left of their fields.
double CConvFileSDR2::TakeNumber(std::string_view& rest) {
    const double number = NumberIn(TakeColumns(rest, kNumberLength));
    rest = TrimBoth(rest);
    return number;
}

void CConvFileSDR2::TargetHeight(std::string_view rest) {
    targetHeight_ = units_.Metres(NumberIn(TrimRight(rest)));
}

/// The point goes under the current station; the station it names is not compared with that.
void CConvFileSDR2::ConversioneRigaP(std::string_view rest) {
    rest = TrimLeft(rest);
    TakeColumns(rest, kNameLength);
    const std::string name(TakeColumns(rest, kNameLength));
    Reading reading;
    reading.slopeDistance = TakeNumber(rest);
    reading.zenithAngle = TakeNumber(rest);
    reading.horizontalAngle = NumberIn(rest.substr(0, kNumberLength));
    const std::string code(TrimBoth(Piece(rest, kNumberLength)));
    AggiungePun(name, code, "", targetHeight_, units_.Applied(WithoutZeroDistance(reading)));
}
