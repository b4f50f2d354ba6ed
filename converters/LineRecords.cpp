#include "converters/LineRecords.h"

#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>

namespace {

constexpr Cause kNoRecordOpen = {RemarkKind::NotRead,
                                 "a value before the first record belongs to none: it is not read"};
constexpr Cause kMixed = {
    RemarkKind::Unit,
    "zenith angle or slope distance mixed with height difference or horizontal distance in one "
    "record: all of them are taken for what the last of their lines says"};
constexpr Cause kHalfReduced = {RemarkKind::Incomplete,
                                "a point with only one of height difference and horizontal "
                                "distance: it has no slope distance and no zenith angle"};

} // namespace

CConvLineRecords::CConvLineRecords(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

void CConvLineRecords::NuovoRecord(RecordType type, std::string_view name) {
    SalvaRecord();
    type_ = type;
    for (std::string& slot : slots_)
        slot.clear();
    slots_[kName] = name;
    recordLine_ = LineNumber();
}

bool CConvLineRecords::FillSlot(std::span<const SlotCode> table, std::string_view code,
                                std::string_view value) {
    const auto found = std::ranges::find_if(table, SameAs(code), &SlotCode::code);
    if (found == table.end())
        return false;
    if (IsHeard())
        JudgeValue(*found, value);
    slots_[found->slot] = value;
    if (found->mode != DistanceMode::Unchanged)
        mode_ = found->mode;
    return true;
}

/// Remarks on the value that fills a slot of the open record.
void CConvLineRecords::JudgeValue(const SlotCode& code, std::string_view value) {
    if (type_ == RecordType::None)
        Note(kNoRecordOpen);
    if (type_ == RecordType::None || type_ == RecordType::Job)
        return;
    if (code.slot >= kHeight)
        CheckNumber(value, kNoNumberIsAbsent);
    const bool isOtherMode = code.mode != DistanceMode::Unchanged && code.mode != mode_;
    if (isOtherMode && !(slots_[kVertical].empty() && slots_[kDistance].empty()))
        Note(kMixed);
}

void CConvLineRecords::SalvaRecord() {
    const AtLine line(*this, recordLine_);
    switch (type_) {
    case RecordType::None:
        break;
    case RecordType::Job:
        SalvaRigaL();
        break;
    case RecordType::Station:
        SalvaRigaS();
        break;
    case RecordType::Point:
        SalvaRigaP();
        break;
    }
}

void CConvLineRecords::SalvaRigaL() {
    AggiungeJob(slots_[0], slots_[1], slots_[2], slots_[3]);
}

/// No code is meant to fill temperature and pressure; they are absent unless a line that belongs to
/// jobs or points stood in the station's record.
void CConvLineRecords::SalvaRigaS() {
    AggiungeSta(slots_[kName], slots_[kCode], NumberOrNoValue(slots_[kHeight]),
                NumberOrNoValue(slots_[3]), NumberOrNoValue(slots_[4]));
}

void CConvLineRecords::SalvaRigaP() {
    const double distance = NumberOrNoValue(slots_[kDistance]);
    const double vertical = NumberOrNoValue(slots_[kVertical]);
    const double horizontalAngle = NumberOrNoValue(slots_[kHorizontalAngle]);
    if (keeper_ && mode_ == DistanceMode::Reduced && IsPresent(distance) != IsPresent(vertical))
        keeper_->NoteAt(kHalfReduced, recordLine_);
    const Reading reading = mode_ == DistanceMode::Reduced
                                ? ReducedReading(distance, vertical, horizontalAngle)
                                : Reading{distance, vertical, horizontalAngle};
    AggiungePun(slots_[kName], slots_[kCode], "", NumberOrNoValue(slots_[kHeight]),
                WithoutZeroDistance(reading));
}
