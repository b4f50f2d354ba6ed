// An MTS download: binary records of 43 bytes, told by their first. Texts end at a NUL or at the
// end of their field; numbers are big-endian: 4-byte floats, 4-byte signed integers.
//
//   81  header        1 instrument (10)
//   82  job           1 name (9)
//   03  station       1 name (9)   10 code (9)   19 instrument height, float, metres
//   01  observation   1 name (9)   10 code (9)   19 target height, float   23 slope distance, float
//                     27 zenith angle, integer   31 horizontal angle, integer, seconds of arc
//   02  the same without a distance, whatever stands in its place
//
// Other records are skipped, and so is a last one that is cut short. Angles come out in gon.

#include "converters/ConvFileMTS.h"

#include "host/NoValue.h"
#include "routines/Angles.h"
#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace {

enum RecordType : unsigned char {
    kObservation = 0x01,
    kObservationWithoutDistance = 0x02,
    kStation = 0x03,
    kHeader = 0x81,
    kJobName = 0x82,
};

constexpr std::size_t kName = 1;
constexpr std::size_t kCode = 10;
constexpr std::size_t kHeight = 19;
constexpr std::size_t kSlopeDistance = 23;
constexpr std::size_t kZenithAngle = 27;
constexpr std::size_t kHorizontalAngle = 31;
constexpr std::size_t kTextWidth = 9;
constexpr std::size_t kHeaderWidth = 10;

constexpr Cause kUnknownRecord = {RemarkKind::Unknown,
                                  "a record of another type than those that are read is skipped"};
constexpr Cause kRecordCut = {RemarkKind::Incomplete,
                              "a last record of fewer than 43 bytes is skipped"};
constexpr Cause kHeaderUnused = {
    RemarkKind::NotRead,
    "the instrument of a header that no job record follows before the next header or the end is "
    "not read"};
constexpr Cause kNotFinite = {RemarkKind::NoNumber,
                              "a height or distance that is no finite number is absent"};

/// How many records are read from one word of progress to the next.
constexpr std::uint64_t kProgressStep = 1024;

} // namespace

CConvFileMTS::CConvFileMTS(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileMTS::~CConvFileMTS() = default;

bool CConvFileMTS::Esegui() {
    if (!OpenFile())
        return false;
    while (LeggeUnaRigaMTS()) {
        switch (static_cast<unsigned char>(record_[0])) {
        case kHeader:
            LeggeIntestazione();
            break;
        case kJobName:
            LeggeJobName();
            break;
        case kStation:
            LeggeStazione();
            break;
        case kObservation:
        case kObservationWithoutDistance:
            LeggePunto();
            break;
        default:
            Skip(kUnknownRecord);
            break;
        }
    }
    NoteUnusedHeader();
    records_.Close();
    return true;
}

bool CConvFileMTS::OpenFile() {
    if (!records_.Open(*fileName_, preparation_.source))
        return false;
    if (keeper_)
        keeper_->Opened();
    return true;
}

bool CConvFileMTS::LeggeUnaRigaMTS() {
    record_.fill(0);
    const std::size_t size = records_.Read(record_.data(), record_.size());
    return (!keeper_ || TellRecord(size)) && size == record_.size();
}

/// False where the conversion is cancelled.
bool CConvFileMTS::TellRecord(std::size_t size) {
    const std::uint64_t before = keeper_->Line();
    if (size > 0)
        keeper_->RecordBegins();
    if (size < record_.size()) {
        if (size > 0)
            Skip(kRecordCut);
        return keeper_->GoesOn(before * kRecordSize + size);
    }
    return before % kProgressStep != 0 || keeper_->GoesOn((before + 1) * kRecordSize);
}

/// Remarks on a header whose instrument no job got.
void CConvFileMTS::NoteUnusedHeader() {
    if (headerLine_ != 0)
        keeper_->NoteAt(kHeaderUnused, headerLine_);
    headerLine_ = 0;
}

/// Reverses two or four bytes in place; any other size is left as it is.
void CConvFileMTS::ChangeEndian(char* bytes, int size) {
    if (size == 2 || size == 4)
        std::reverse(bytes, bytes + size);
}

template <class Number>
Number CConvFileMTS::BigEndian(std::size_t offset) const {
    std::array<char, sizeof(Number)> bytes{};
    std::memcpy(bytes.data(), record_.data() + offset, bytes.size());
    if constexpr (std::endian::native == std::endian::little)
        ChangeEndian(bytes.data(), static_cast<int>(bytes.size()));
    return std::bit_cast<Number>(bytes);
}

std::string CConvFileMTS::Text(std::size_t offset, std::size_t width) const {
    const std::string_view field(record_.data() + offset, width);
    return std::string(TrimBoth(field.substr(0, field.find('\0'))));
}

double CConvFileMTS::Length(std::size_t offset) {
    const double length = BigEndian<float>(offset);
    if (!std::isfinite(length))
        Note(kNotFinite);
    return length;
}

void CConvFileMTS::LeggeIntestazione() {
    NoteUnusedHeader();
    header_ = Text(kName, kHeaderWidth);
    headerLine_ = header_.empty() ? 0 : LineNumber();
}

void CConvFileMTS::LeggeJobName() {
    headerLine_ = 0;
    AggiungeJob(Text(kName, kTextWidth), "", header_, "");
}

void CConvFileMTS::LeggeStazione() {
    AggiungeSta(Text(kName, kTextWidth), Text(kCode, kTextWidth), Length(kHeight), kNoValue,
                kNoValue);
}

void CConvFileMTS::LeggePunto() {
    Reading reading{.zenithAngle = BigEndian<std::int32_t>(kZenithAngle) * kGonPerArcSecond,
                    .horizontalAngle =
                        BigEndian<std::int32_t>(kHorizontalAngle) * kGonPerArcSecond};
    if (record_[0] == kObservation)
        reading.slopeDistance = Length(kSlopeDistance);
    AggiungePun(Text(kName, kTextWidth), Text(kCode, kTextWidth), "", Length(kHeight),
                WithoutZeroDistance(reading));
}
