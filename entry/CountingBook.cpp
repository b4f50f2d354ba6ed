#include "entry/CountingBook.h"

#include "host/NoValue.h"

#include <cmath>

namespace convfile::counting {

namespace {

// What a surveyor would measure, wide enough for every job and too narrow for columns that mean
// something else: instruments measure some kilometres, targets stand on poles, and nobody sights
// within 20 gon of the zenith or the nadir all day.
constexpr double kLongestDistance = 20'000;
constexpr double kHighestTarget = 20;
constexpr double kSteepest = 80; ///< gon from the horizontal, in either face
constexpr double kFullCircle = 400;

bool IsBelievableZenith(double angle) {
    return std::fabs(angle - 100) < kSteepest || std::fabs(angle - 300) < kSteepest;
}

} // namespace

void Point::SetDtIntAng(double slopeDistance, double zenithAngle, double horizontalAngle) {
    slopeDistance_ = slopeDistance;
    zenithAngle_ = zenithAngle;
    horizontalAngle_ = horizontalAngle;
}

void Point::Clear() {
    SetNome({});
    targetHeight_ = slopeDistance_ = zenithAngle_ = horizontalAngle_ = kNoValue;
}

void Point::AddTo(Counts& counts) const {
    const bool hasDistance = IsPresent(slopeDistance_);
    const bool hasZenith = IsPresent(zenithAngle_);
    const bool hasHorizontal = IsPresent(horizontalAngle_);
    if (!hasDistance && !hasZenith && !hasHorizontal)
        return;
    ++counts.points;
    counts.complete += hasDistance && hasZenith && hasHorizontal ? 1 : 0;
    const bool believable =
        (!hasDistance || (slopeDistance_ >= 0 && slopeDistance_ <= kLongestDistance)) &&
        (!hasZenith || IsBelievableZenith(zenithAngle_)) &&
        (!hasHorizontal || std::fabs(horizontalAngle_) <= kFullCircle) &&
        (!IsPresent(targetHeight_) || std::fabs(targetHeight_) <= kHighestTarget);
    counts.unbelievable += believable ? 0 : 1;
}

CJob* Book::AddJob(bool) {
    EndPoint();
    ++jobs_;
    stations_ = points_ = 0;
    return &job_;
}

CSta* Book::AddSta(int job, bool) {
    if (!GetJobAt(job))
        return nullptr;
    EndPoint();
    ++counts_.records;
    ++stations_;
    points_ = 0;
    return &station_;
}

CSta* Book::GetStaAt(int, int sta) {
    return sta >= 0 && sta < stations_ ? &station_ : nullptr;
}

bool Book::GetIndiciDiSta(CSta*, int& job, int& sta) {
    job = jobs_ - 1;
    sta = stations_ - 1;
    return true;
}

CPun* Book::AddPun(int job, int sta, bool) {
    if (!GetJobAt(job) || !GetStaAt(job, sta))
        return nullptr;
    EndPoint();
    ++counts_.records;
    ++points_;
    pointOpen_ = true;
    current_ = 1 - current_;
    point_[current_].Clear();
    return &point_[current_];
}

CPun* Book::GetPunAt(int, int, int pun) {
    return pun >= 0 && pun < points_ ? &point_[current_] : nullptr;
}

COri* Book::AddOri(bool) {
    ++counts_.records;
    return &orientationPoint_;
}

void Book::EndPoint() {
    if (pointOpen_)
        point_[current_].AddTo(counts_);
    pointOpen_ = false;
}

const Counts& Book::Finish() {
    EndPoint();
    counts_.namedJobs = job_.Named();
    return counts_;
}

} // namespace convfile::counting
