#include "converters/PendingRecords.h"

#include "converters/ConvFilePhenix.h"
#include "converters/KeywordRecords.h"
#include "routines/Numbers.h"
#include "routines/Reduction.h"
#include "routines/Text.h"

#include <algorithm>

namespace {

constexpr std::size_t kShortestKeyword = 2;

} // namespace

template <class Format>
CConvPendingRecords<Format>::CConvPendingRecords(CLibCmp& fieldBook, std::string* fileName)
    : CConvFileBase(fieldBook, fileName) {}

template <class Format>
bool CConvPendingRecords<Format>::CutKeyword(std::string_view& keyword) {
    if (line_.size() < kShortestLine)
        return false;
    const std::size_t blank = line_.find(' ');
    if (blank == std::string_view::npos || blank < kShortestKeyword)
        return false;
    fields_ = TrimBoth(line_.substr(blank));
    keyword = line_.substr(0, blank);
    return true;
}

template <class Format>
std::string_view CConvPendingRecords<Format>::SeparaCampo() {
    return TakeField(fields_, ',');
}

template <class Format>
void CConvPendingRecords<Format>::FlushJob() {
    if (jobPending_)
        SalvaRigaL();
}

template <class Format>
void CConvPendingRecords<Format>::FlushStation() {
    if (stationPending_)
        Self().SalvaRigaS();
}

template <class Format>
void CConvPendingRecords<Format>::FlushPoint() {
    if (pointPending_)
        Self().SalvaRigaP();
}

template <class Format>
void CConvPendingRecords<Format>::FlushAll() {
    FlushJob();
    FlushStation();
    FlushPoint();
}

template <class Format>
bool CConvPendingRecords<Format>::HasAny(std::initializer_list<std::size_t> slots) const {
    return std::ranges::any_of(slots, [&](std::size_t slot) { return !slots_[slot].empty(); });
}

template <class Format>
void CConvPendingRecords<Format>::BeginPoint(std::initializer_list<std::size_t> slots) {
    FlushJob();
    FlushStation();
    if (HasAny(slots))
        Self().SalvaRigaP();
    pointPending_ = true;
}

template <class Format>
void CConvPendingRecords<Format>::FillNameHeightCode() {
    slots_[kName] = SeparaCampo();
    slots_[kHeight] = SeparaCampo();
    slots_[kCode] = SeparaCampo();
}

template <class Format>
void CConvPendingRecords<Format>::StationRecord() {
    FlushJob();
    FlushPoint();
    if (HasAny({kName, kHeight, kCode}))
        Self().SalvaRigaS();
    FillNameHeightCode();
    stationPending_ = true;
}

template <class Format>
void CConvPendingRecords<Format>::SightedPoint() {
    BeginPoint({kName, kHeight, kCode});
    FillNameHeightCode();
}

/// The fourth field goes on with the code.
template <class Format>
void CConvPendingRecords<Format>::SideShot() {
    SightedPoint();
    const std::string_view more = SeparaCampo();
    if (!more.empty())
        slots_[kCode].append(" ").append(more);
}

template <class Format>
void CConvPendingRecords<Format>::AnglesReading() {
    BeginPoint({kHorizontalAngle, kZenithAngle});
    slots_[kHorizontalAngle] = SeparaCampo();
    slots_[kZenithAngle] = SeparaCampo();
}

template <class Format>
void CConvPendingRecords<Format>::PolarRecord() {
    BeginPoint({kHorizontalAngle, kZenithAngle, kDistance});
    slots_[kHorizontalAngle] = SeparaCampo();
    slots_[kZenithAngle] = SeparaCampo();
    slots_[kDistance] = SeparaCampo();
}

template <class Format>
void CConvPendingRecords<Format>::ReducedRecord(int distanceDecimals) {
    BeginPoint({kHorizontalAngle, kZenithAngle, kDistance});
    slots_[kHorizontalAngle] = SeparaCampo();
    const double horizontalDistance = DoubleDaString(SeparaCampo());
    const double heightDifference = DoubleDaString(SeparaCampo());
    const Reading reading = ReadingFromReduced(horizontalDistance, heightDifference);
    slots_[kZenithAngle] = StringDaDouble(reading.zenithAngle, 0, 6);
    slots_[kDistance] = StringDaDouble(reading.slopeDistance, 0, distanceDecimals);
    warningKind_ = kReduced;
}

/// The first job record is that of the job named after the file; every later one opens a job.
template <class Format>
void CConvPendingRecords<Format>::SalvaRigaL() {
    if (updatesJob_) {
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

template <class Format>
void CConvPendingRecords<Format>::AnnullaCampi() {
    for (std::string& slot : slots_)
        slot.clear();
}

template class CConvPendingRecords<CConvKeywordRecords>;
template class CConvPendingRecords<CConvFilePhenix>;
