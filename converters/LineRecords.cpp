#include "converters/LineRecords.h"

#include "routines/Numbers.h"

#include <algorithm>

CConvLineRecords::CConvLineRecords(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

void CConvLineRecords::NuovoRecord(RecordType type, std::string_view name) {
    SalvaRecord();
    type_ = type;
    for (std::string& slot : slots_)
        slot.clear();
    slots_[kName] = name;
}

void CConvLineRecords::FillSlot(std::span<const SlotCode> table, std::string_view code,
                                std::string_view value) {
    const auto found = std::ranges::find(table, code, &SlotCode::code);
    if (found == table.end())
        return;
    slots_[found->slot] = value;
    if (found->mode != DistanceMode::Unchanged)
        mode_ = found->mode;
}

void CConvLineRecords::SalvaRecord() {
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
    const Reading reading = mode_ == DistanceMode::Reduced
                                ? ReducedReading(distance, vertical, horizontalAngle)
                                : Reading{distance, vertical, horizontalAngle};
    AggiungePun(slots_[kName], slots_[kCode], "", NumberOrNoValue(slots_[kHeight]),
                WithoutZeroDistance(reading));
}
