#include "memory/FieldBook.h"

#include <algorithm>

namespace convfile::memory {

namespace {

template <class Owner>
typename Owner::pointer At(std::vector<Owner>& records, int index) {
    const bool inRange = index >= 0 && static_cast<std::size_t>(index) < records.size();
    return inRange ? records[static_cast<std::size_t>(index)].get() : nullptr;
}

} // namespace

bool FieldBook::Declines(Adder adder) {
    const auto index = static_cast<std::size_t>(adder);
    return calls_[index]++ >= declineFrom_[index];
}

Job* FieldBook::FindJob(int job) {
    return At(jobs_, job);
}

Station* FieldBook::FindStation(int job, int sta) {
    Job* const found = FindJob(job);
    return found ? At(found->stations, sta) : nullptr;
}

CJob* FieldBook::AddJob(bool) {
    if (Declines(Adder::Job))
        return nullptr;
    return jobs_.emplace_back(std::make_unique<Job>()).get();
}

CJob* FieldBook::GetJobAt(int job) {
    return FindJob(job);
}

CSta* FieldBook::AddSta(int job, bool) {
    Job* const owner = FindJob(job);
    if (Declines(Adder::Station) || !owner)
        return nullptr;
    const int index = static_cast<int>(owner->stations.size());
    return owner->stations.emplace_back(std::make_unique<Station>(job, index, codes_)).get();
}

int FieldBook::GetStaArSize(int job) {
    const Job* const owner = FindJob(job);
    return owner ? static_cast<int>(owner->stations.size()) : 0;
}

CSta* FieldBook::GetStaAt(int job, int sta) {
    return FindStation(job, sta);
}

bool FieldBook::GetIndiciDiSta(CSta* station, int& job, int& sta) {
    const auto* const own = dynamic_cast<const Station*>(station);
    if (!own || FindStation(own->JobIndex(), own->Index()) != own)
        return false;
    job = own->JobIndex();
    sta = own->Index();
    return true;
}

CPun* FieldBook::AddPun(int job, int sta, bool) {
    Station* const owner = FindStation(job, sta);
    if (Declines(Adder::Point) || !owner)
        return nullptr;
    constexpr std::size_t kFew = 4; // of most stations
    if (owner->points.empty())
        owner->points.reserve(kFew);
    return owner->points.emplace_back(pointStorage_.NewPoint(*owner)).get();
}

CPun* FieldBook::InsPunAt(int job, int sta, int pun, bool) {
    Station* const owner = FindStation(job, sta);
    if (Declines(Adder::Point) || !owner)
        return nullptr;
    auto& points = owner->points;
    const auto count = static_cast<std::ptrdiff_t>(points.size());
    if (pun < 0 || pun > count)
        return nullptr;
    return points.insert(points.begin() + pun, pointStorage_.NewPoint(*owner))->get();
}

int FieldBook::GetPunArSize(int job, int sta) {
    const Station* const owner = FindStation(job, sta);
    return owner ? static_cast<int>(owner->points.size()) : 0;
}

CPun* FieldBook::GetPunAt(int job, int sta, int pun) {
    Station* const owner = FindStation(job, sta);
    return owner ? At(owner->points, pun) : nullptr;
}

void FieldBook::DelPunAt(CPun* point) {
    const auto* const own = dynamic_cast<const Point*>(point);
    if (!own)
        return;
    Station* const owner = FindStation(own->Owner().JobIndex(), own->Owner().Index());
    if (owner != &own->Owner())
        return;
    // Converters delete the point they added last, so look for it from the end.
    auto& points = owner->points;
    const auto found = std::ranges::find(points.rbegin(), points.rend(), own,
                                         [](const auto& held) { return held.get(); });
    if (found != points.rend())
        points.erase(std::next(found).base());
}

COri* FieldBook::AddOri(bool) {
    if (Declines(Adder::OrientationPoint))
        return nullptr;
    return orientationPoints_.emplace_back(std::make_unique<OrientationPoint>()).get();
}

} // namespace convfile::memory
