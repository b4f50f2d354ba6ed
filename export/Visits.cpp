#include "export/Visits.h"

#include <cstddef>

namespace convfile::exports {

namespace {

/// Calls `found` with each visit and its place, set-up by set-up.
template <class Found>
void ForEachVisit(const Survey& survey, Found found) {
    std::vector<std::uint32_t> sightedBy(survey.places.size(), 0); // the set-up's number, from 1
    std::vector<std::uint32_t> seenBy(survey.places.size(), 0);
    std::uint32_t number = 0;
    for (const Occupation& occupation : survey.occupations) {
        const std::uint32_t index = number++;
        if (!occupation.hasSights)
            continue;
        found(occupation.place, Visit{index, Visit::StandsOn});
        for (const Sight& sight : survey.SightsOf(occupation)) {
            if (!sight.directionOnly)
                sightedBy[sight.place] = number;
        }
        for (const Sight& sight : survey.SightsOf(occupation)) {
            if (seenBy[sight.place] == number)
                continue;
            seenBy[sight.place] = number;
            const bool sighted = sightedBy[sight.place] == number;
            found(sight.place, Visit{index, sighted ? Visit::Sights : Visit::Directs});
        }
    }
}

} // namespace

Visits::Visits(const Survey& survey) : first_(survey.places.size() + 1, 0) {
    std::vector<std::uint32_t> count(survey.places.size(), 0);
    ForEachVisit(survey, [&](std::uint32_t place, Visit) { ++count[place]; });
    std::vector<std::uint32_t> shared(survey.occupations.size(), 0);
    ForEachVisit(survey, [&](std::uint32_t place, Visit visit) {
        if (count[place] > 1 || survey.places[place].IsFixed())
            ++shared[visit.occupation];
    });
    const auto forEachListed = [&](auto found) {
        ForEachVisit(survey, [&](std::uint32_t place, Visit visit) {
            if (shared[visit.occupation] > 1)
                found(place, visit);
        });
    };
    forEachListed([&](std::uint32_t place, Visit) { ++first_[place + 1]; });
    for (std::size_t i = 1; i < first_.size(); ++i)
        first_[i] += first_[i - 1];
    visits_.resize(first_.back());
    std::vector<std::uint32_t> next(first_.begin(), first_.end() - 1);
    forEachListed([&](std::uint32_t place, Visit visit) { visits_[next[place]++] = visit; });
}

} // namespace convfile::exports
