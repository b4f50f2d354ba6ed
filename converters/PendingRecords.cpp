#include "converters/PendingRecords.h"

#include "routines/Numbers.h"
#include "routines/Reduction.h"
#include "routines/Text.h"

#include <algorithm>

namespace {

constexpr std::size_t kShortestKeyword = 2;

} // namespace

CConvPendingRecords::CConvPendingRecords(CLibCmp& fieldBook, std::string* fileName,
                                         Save saveStation, Save savePoint)
    : CConvFileBase(fieldBook, fileName), saveStation_(saveStation), savePoint_(savePoint) {}

bool CConvPendingRecords::CutKeyword(std::string_view& keyword) {
    if (line_.size() < kShortestLine)
        return false;
    const std::size_t blank = line_.find(' ');
    if (blank == std::string_view::npos || blank < kShortestKeyword)
        return false;
    fields_ = TrimBoth(line_.substr(blank));
    keyword = line_.substr(0, blank);
    return true;
}

std::string_view CConvPendingRecords::SeparaCampo() {
    return TakeField(fields_, ',');
}

/// A line's fields are gone, not only empty, once the last of them was taken.
std::string_view CConvPendingRecords::NumberField(const Cause& noNumber) {
    if (fields_.data() == nullptr)
        Note(kFieldsMissing);
    const std::string_view field = SeparaCampo();
    CheckNumber(field, noNumber);
    return field;
}

void CConvPendingRecords::NoteRest() {
    if (fields_.find_first_not_of(", \t") != std::string_view::npos)
        Note(kMoreFields);
}

void CConvPendingRecords::FlushJob() {
    if (jobPending_)
        SalvaRigaL();
}

void CConvPendingRecords::FlushStation() {
    if (stationPending_)
        SaveStation();
}

void CConvPendingRecords::FlushPoint() {
    if (pointPending_)
        SavePoint();
}

void CConvPendingRecords::FlushAll() {
    FlushJob();
    FlushStation();
    FlushPoint();
}

bool CConvPendingRecords::HasAny(std::initializer_list<std::size_t> slots) const {
    return std::ranges::any_of(slots, [&](std::size_t slot) { return !slots_[slot].empty(); });
}

void CConvPendingRecords::BeginPoint(std::initializer_list<std::size_t> slots) {
    FlushJob();
    FlushStation();
    if (HasAny(slots))
        SavePoint();
    AddToRecord();
    pointPending_ = true;
}

void CConvPendingRecords::AddToRecord() {
    if (IsHeard() && std::ranges::all_of(slots_, &std::string::empty))
        recordLine_ = LineNumber();
}

void CConvPendingRecords::CheckAngles() {
    if (slots_[kHorizontalAngle].empty() || slots_[kZenithAngle].empty())
        NoteAtRecord(kAngleMissing);
}

void CConvPendingRecords::SaveStation() {
    const AtLine at(*this, recordLine_);
    (this->*saveStation_)();
}

void CConvPendingRecords::SavePoint() {
    const AtLine at(*this, recordLine_);
    (this->*savePoint_)();
}

void CConvPendingRecords::FillNameHeightCode() {
    slots_[kName] = SeparaCampo();
    slots_[kHeight] = NumberField();
    slots_[kCode] = SeparaCampo();
}

void CConvPendingRecords::StationRecord() {
    FlushJob();
    FlushPoint();
    if (HasAny({kName, kHeight, kCode}))
        SaveStation();
    AddToRecord();
    FillNameHeightCode();
    stationPending_ = true;
}

void CConvPendingRecords::SightedPoint() {
    BeginPoint({kName, kHeight, kCode});
    FillNameHeightCode();
}

/// The fourth field goes on with the code.
void CConvPendingRecords::SideShot() {
    SightedPoint();
    const std::string_view more = SeparaCampo();
    if (!more.empty())
        slots_[kCode].append(" ").append(more);
}

void CConvPendingRecords::AnglesReading() {
    BeginPoint({kHorizontalAngle, kZenithAngle});
    slots_[kHorizontalAngle] = NumberField();
    slots_[kZenithAngle] = NumberField();
}

void CConvPendingRecords::PolarRecord() {
    BeginPoint({kHorizontalAngle, kZenithAngle, kDistance});
    slots_[kHorizontalAngle] = NumberField();
    slots_[kZenithAngle] = NumberField();
    slots_[kDistance] = NumberField();
}

void CConvPendingRecords::ReducedRecord(int distanceDecimals, double withoutPoint) {
    const auto nextDistance = [&] {
        const std::string_view field = NumberField();
        return DividedNumber(field, Contains(field, ".") ? 1 : withoutPoint);
    };
    BeginPoint({kHorizontalAngle, kZenithAngle, kDistance});
    slots_[kHorizontalAngle] = NumberField();
    const double horizontalDistance = nextDistance();
    const double heightDifference = nextDistance();
    const Reading reading = ReadingFromReduced(horizontalDistance, heightDifference);
    slots_[kZenithAngle] = StringDaDouble(reading.zenithAngle, 0, 6);
    slots_[kDistance] = StringDaDouble(reading.slopeDistance, 0, distanceDecimals);
    warningKind_ = kReduced;
}

/// The first job record is that of the job named after the file; every later one opens a job.
void CConvPendingRecords::SalvaRigaL() {
    const AtLine at(*this, recordLine_);
    if (updatesJob_) {
        if (CJob* const job = CurrentJob())
            Tell(job);
        SetNomeAtJob(slots_[kName]);
        SetOperAtJob(slots_[kOperator]);
        SetStrumAtJob(slots_[kInstrument]);
        SetDataAtJob(slots_[kDate]);
        updatesJob_ = false;
    } else {
        AggiungeJob(slots_[kName], slots_[kOperator], slots_[kInstrument], slots_[kDate]);
    }
    jobPending_ = false;
    AnnullaCampi();
}

void CConvPendingRecords::AnnullaCampi() {
    for (std::string& slot : slots_)
        slot.clear();
}
