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

/// Cuts a number off the front. The next field counts from the first character behind it that is
/// not blank, not from a fixed column, on purpose: numbers stand at the left of their fields.
double TakeNumber(std::string_view& rest) {
    const double number = DoubleDaString(TakeColumns(rest, kNumberLength));
    rest = TrimBoth(rest);
    return number;
}

} // namespace

struct CConvFileSDR2::Record {
    std::string_view code;
    void (CConvFileSDR2::*handle)(std::string_view rest);
};

constexpr CConvFileSDR2::Record CConvFileSDR2::kRecords[] = {
    {"10NM", &CConvFileSDR2::JobName},          {"13TS", &CConvFileSDR2::TimeStamp},
    {"02TP", &CConvFileSDR2::Station},          {"02IC", &CConvFileSDR2::Station},
    {"02RS", &CConvFileSDR2::Station},          {"02KI", &CConvFileSDR2::Station},
    {"02CO", &CConvFileSDR2::Station},          {"03NM", &CConvFileSDR2::TargetHeight},
    {"03IC", &CConvFileSDR2::TargetHeight},     {"09F1", &CConvFileSDR2::ConversioneRigaP},
    {"09F2", &CConvFileSDR2::ConversioneRigaP},
};

CConvFileSDR2::CConvFileSDR2(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileSDR2::~CConvFileSDR2() = default;

bool CConvFileSDR2::Esegui() {
    return OpenFile() &&
           ForEachLine([this] { return LeggeUnaRigaSDR2(); }, [this] { ConvertiRiga(); });
}

/// An empty line leaves the line before it in place, which is then converted again, on purpose: a
/// job that is converted again must have as many points as the field book that a host made of it
/// before.
bool CConvFileSDR2::LeggeUnaRigaSDR2() {
    return file_->ReadLineOrKeep(text_);
}

void CConvFileSDR2::ConvertiRiga() {
    const std::string_view line = text_;
    const std::string_view code = TrimBoth(line.substr(0, kCodeLength));
    const auto* const record = std::ranges::find(kRecords, code, &Record::code);
    if (record != std::end(kRecords))
        (this->*record->handle)(Piece(line, kCodeLength));
}

void CConvFileSDR2::JobName(std::string_view rest) {
    jobName_ = TrimBoth(rest);
    jobPending_ = true;
}

/// A time stamp without a job name before it adds no job.
void CConvFileSDR2::TimeStamp(std::string_view rest) {
    if (jobPending_)
        AggiungeJob(jobName_, "", "", std::string(TrimBoth(rest)));
    jobPending_ = false;
}

void CConvFileSDR2::Station(std::string_view rest) {
    rest = TrimLeft(rest);
    const std::string_view name = rest.substr(0, kNameLength);
    rest = Piece(rest, kBeforeInstrumentHeight);
    const double instrumentHeight = DoubleDaString(TakeColumns(rest, kNumberLength));
    AggiungeSta(std::string(name), std::string(TrimRight(rest)), instrumentHeight, kNoValue,
                kNoValue);
}

void CConvFileSDR2::TargetHeight(std::string_view rest) {
    targetHeight_ = DoubleDaString(TrimRight(rest));
}

/// The point goes under the current station; the station it names is not compared with that.
void CConvFileSDR2::ConversioneRigaP(std::string_view rest) {
    rest = TrimLeft(rest);
    TakeColumns(rest, kNameLength);
    const std::string name(TakeColumns(rest, kNameLength));
    Reading reading;
    reading.slopeDistance = TakeNumber(rest);
    reading.zenithAngle = TakeNumber(rest);
    reading.horizontalAngle = DoubleDaString(rest.substr(0, kNumberLength));
    const std::string code(TrimBoth(Piece(rest, kNumberLength)));
    AggiungePun(name, code, "", targetHeight_, WithoutZeroDistance(reading));
}
