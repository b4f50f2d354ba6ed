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
            break;
        }
    }
    records_.Close();
    return true;
}

bool CConvFileMTS::OpenFile() {
    return records_.Open(*fileName_, preparation_.source);
}

bool CConvFileMTS::LeggeUnaRigaMTS() {
    record_.fill(0);
    return records_.Read(record_.data(), record_.size()) == record_.size();
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

void CConvFileMTS::LeggeIntestazione() {
    header_ = Text(kName, kHeaderWidth);
}

void CConvFileMTS::LeggeJobName() {
    AggiungeJob(Text(kName, kTextWidth), "", header_, "");
}

void CConvFileMTS::LeggeStazione() {
    AggiungeSta(Text(kName, kTextWidth), Text(kCode, kTextWidth), BigEndian<float>(kHeight),
                kNoValue, kNoValue);
}

void CConvFileMTS::LeggePunto() {
    Reading reading{.zenithAngle = BigEndian<std::int32_t>(kZenithAngle) * kGonPerArcSecond,
                    .horizontalAngle =
                        BigEndian<std::int32_t>(kHorizontalAngle) * kGonPerArcSecond};
    if (record_[0] == kObservation)
        reading.slopeDistance = BigEndian<float>(kSlopeDistance);
    AggiungePun(Text(kName, kTextWidth), Text(kCode, kTextWidth), "", BigEndian<float>(kHeight),
                WithoutZeroDistance(reading));
}
