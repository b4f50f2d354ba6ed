// An FLD file: one value a line, a two-letter code and from the fourth column on the value.
//
//   LA VIA ROMA         job
//   NS TS-3             instrument
//   DA 15/03/2007       date
//   ST 'S1              station; the first character of its name is a mark
//   IS CHIODO           station code
//   HS 1.545            instrument height
//   PN '101             point; the same
//   IP SPIGOLO          point code
//   HP 1.600            target height
//   AZ 123.4567         horizontal angle
//   ZN 98.7654          zenith angle           or   ZH -0.450    height difference
//   DT 25.417           slope distance         or   DO 25.400    horizontal distance
//
// Lengths are metres, angles gon. Other codes are skipped. A record has no end of its own.

#include "converters/ConvFileFLD.h"

#include "routines/Text.h"

namespace {

constexpr Cause kThirdColumn = {
    RemarkKind::NotRead,
    "the character between code and value, where a blank belongs, is not read"};

} // namespace

constexpr CConvLineRecords::SlotCode CConvFileFLD::kSlotCodes[] = {
    {"NS", Slot{2}, DistanceMode::Unchanged}, // instrument, in a job
    {"DA", Slot{3}, DistanceMode::Unchanged}, // date, in a job
    {"IS", kCode, DistanceMode::Unchanged},
    {"HS", kHeight, DistanceMode::Unchanged},
    {"IP", kCode, DistanceMode::Unchanged},
    {"HP", kHeight, DistanceMode::Unchanged},
    {"AZ", kHorizontalAngle, DistanceMode::Unchanged},
    {"ZN", kVertical, DistanceMode::Polar},
    {"ZH", kVertical, DistanceMode::Reduced},
    {"DT", kDistance, DistanceMode::Polar},
    {"DO", kDistance, DistanceMode::Reduced},
};

CConvFileFLD::CConvFileFLD(CLibCmp& fieldBook, std::string* fileName)
    : CConvLineRecords(fieldBook, fileName) {}

CConvFileFLD::~CConvFileFLD() = default;

bool CConvFileFLD::Esegui() {
    if (!OpenFile())
        return false;
    ForEachLine([this] { return LeggeUnaRiga(); }, [this] { ConvertiRiga(); });
    SalvaRecord();
    return true;
}

bool CConvFileFLD::LeggeUnaRiga() {
    if (!file_->ReadLineWithoutLast(line_))
        return false;
    line_ = TrimBoth(line_);
    code_ = Piece(line_, 0, 2);
    data_ = TrimBoth(Piece(line_, 3));
    return true;
}

/// The first character of a station's or point's name is dropped whatever it is, on purpose: the
/// collectors write marks of their own there.
void CConvFileFLD::ConvertiRiga() {
    if (code_ == "LA")
        NuovoRecord(RecordType::Job, data_);
    else if (code_ == "ST")
        NuovoRecord(RecordType::Station, Piece(data_, 1));
    else if (code_ == "PN")
        NuovoRecord(RecordType::Point, Piece(data_, 1));
    else if (!FillSlot(kSlotCodes, code_, data_)) {
        Skip();
        return;
    }
    if (IsHeard() && !TrimBoth(Piece(line_, 2, 1)).empty())
        Note(kThirdColumn);
}
