#include "field_book.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace example {

namespace {

constexpr double kGonPerRadian = 200 / std::numbers::pi;

template <class Records>
auto* At(Records& records, int index) {
    const bool inRange = index >= 0 && static_cast<std::size_t>(index) < records.size();
    return inRange ? &records[static_cast<std::size_t>(index)] : nullptr;
}

} // namespace

void Point::SetDtIntAng(double distance, double vertical, double horizontal) {
    slopeDistance = distance;
    zenithAngle = vertical;
    horizontalAngle = horizontal;
}

/// Converters hand on the book's own setting and calculator, so that is what they are.
void Point::SetCoordEtCalcMisure(bool derive, double newX, double newY, double newZ,
                                 CCalcDsOr& calculator, double, double) {
    SetCoord(newX, newY, newZ);
    if (derive)
        static_cast<const Calculator&>(calculator).Observe(*this);
}

/// From the instrument to the prism; a height that is not known counts as 0. Where the point or its
/// station has no place there is nothing to observe.
void Calculator::Observe(Point& point) const {
    const Station& from = point.station;
    if (!IsPresent(point.x) || !IsPresent(point.y) || !IsPresent(from.x) || !IsPresent(from.y))
        return;
    const double east = point.x - from.x;
    const double north = point.y - from.y;
    const double up = ValueOrZero(point.z) + ValueOrZero(point.targetHeight) - ValueOrZero(from.z) -
                      ValueOrZero(from.instrumentHeight);
    const double horizontal = std::hypot(east, north);
    const double slope = std::hypot(horizontal, up);
    if (!std::isfinite(slope))
        return;
    const double elevation = std::atan2(up, horizontal) * kGonPerRadian;
    const double bearing = std::atan2(east, north) * kGonPerRadian; // from north, clockwise
    point.SetDtIntAng(slope, 100 - elevation, bearing < 0 ? bearing + 400 : bearing);
}

void Job::SetLabels(const std::string& newName, const std::string& newOperator,
                    const std::string& newInstrument, const std::string& newDate) {
    name = newName;
    operatorName = newOperator;
    instrument = newInstrument;
    date = newDate;
}

Job* FieldBook::FindJob(int job) {
    return At(jobs, job);
}

Station* FieldBook::FindStation(int job, int sta) {
    Job* const owner = FindJob(job);
    return owner ? At(owner->stations, sta) : nullptr;
}

CJob* FieldBook::AddJob(bool) {
    return &jobs.emplace_back();
}

CSta* FieldBook::AddSta(int job, bool) {
    Job* const owner = FindJob(job);
    return owner ? &owner->stations.emplace_back(job, GetStaArSize(job)) : nullptr;
}

int FieldBook::GetStaArSize(int job) {
    const Job* const owner = FindJob(job);
    return owner ? static_cast<int>(owner->stations.size()) : 0;
}

/// Stations are never removed here, so each knows its place for good.
bool FieldBook::GetIndiciDiSta(CSta* station, int& job, int& sta) {
    const auto* const own = dynamic_cast<const Station*>(station);
    if (!own || FindStation(own->job, own->index) != own)
        return false;
    job = own->job;
    sta = own->index;
    return true;
}

CPun* FieldBook::AddPun(int job, int sta, bool complete) {
    return InsPunAt(job, sta, GetPunArSize(job, sta), complete);
}

CPun* FieldBook::InsPunAt(int job, int sta, int pun, bool) {
    Station* const owner = FindStation(job, sta);
    if (!owner || pun < 0 || pun > GetPunArSize(job, sta))
        return nullptr;
    return owner->points.insert(owner->points.begin() + pun, std::make_unique<Point>(*owner))
        ->get();
}

int FieldBook::GetPunArSize(int job, int sta) {
    const Station* const owner = FindStation(job, sta);
    return owner ? static_cast<int>(owner->points.size()) : 0;
}

CPun* FieldBook::GetPunAt(int job, int sta, int pun) {
    Station* const owner = FindStation(job, sta);
    const auto* const found = owner ? At(owner->points, pun) : nullptr;
    return found ? found->get() : nullptr;
}

/// Converters remove the point that they added last: it is looked for from the end.
void FieldBook::DelPunAt(CPun* point) {
    const auto* const own = dynamic_cast<const Point*>(point);
    if (!own)
        return;
    auto& points = own->station.points;
    const auto found = std::find_if(points.rbegin(), points.rend(),
                                    [own](const auto& held) { return held.get() == own; });
    if (found != points.rend())
        points.erase(std::next(found).base());
}

COri* FieldBook::AddOri(bool) {
    return &orientationPoints.emplace_back();
}

} // namespace example
