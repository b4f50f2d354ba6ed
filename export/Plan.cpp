#include "export/Plan.h"

#include "export/Survey.h"
#include "export/Visits.h"
#include "routines/Trigonometry.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <queue>
#include <utility>

namespace convfile::exports {

namespace {

constexpr int kDecimals = 4;

double Length(double east, double north) {
    return std::sqrt(east * east + north * north); // std::hypot differs from system to system
}

/// A turn of the circle, clockwise from north.
struct Turn {
    double sine = 0;
    double cosine = 1;

    double East(const Sight& sight) const { return sight.east * cosine + sight.north * sine; }
    double North(const Sight& sight) const { return sight.north * cosine - sight.east * sine; }
};

/// Sums up how a circle lies to the plan: each pair of directions counts by their lengths.
class TurnSum {
public:
    void Add(const Sight& seen, double east, double north, double weight) {
        sine_ += weight * (east * seen.north - north * seen.east);
        cosine_ += weight * (east * seen.east + north * seen.north);
    }
    /// False where the pairs say nothing, or contradict each other altogether.
    bool Get(Turn& turn) const {
        const double length = Length(sine_, cosine_);
        if (!std::isfinite(length) || length <= 0)
            return false;
        turn = {sine_ / length, cosine_ / length};
        return true;
    }

private:
    double sine_ = 0;
    double cosine_ = 0;
};

/// Where a set-up was placed.
struct Setting {
    double east = 0;
    double north = 0;
    double height = 0;
    Turn turn;
};

class JobPlanner {
public:
    JobPlanner(const Survey& survey, std::size_t job, Plan& plan)
        : survey_(survey),
          job_(job),
          plan_(plan),
          visits_(survey),
          states_(survey.places.size()),
          progress_(survey.occupations.size()),
          settings_(survey.occupations.size()) {}

    void Run() {
        if (std::ranges::any_of(survey_.places, &Place::IsFixed))
            RunFixedGroup();
        std::uint32_t next = 0;
        while (FindNext(next, [](const Occupation&) { return true; }))
            RunGroupFrom(next);
    }

private:
    /// A place in the group that is being worked on.
    struct State {
        std::uint32_t group = 0; ///< where it is another one, the place has no position yet
        bool held = false;       ///< given, or stood on: sights do not move it
        double east = 0;
        double north = 0;
        double height = kNoValue;
        double eastSum = 0;
        double northSum = 0;
        double heightSum = 0;
        double count = 0;
    };

    /// How much a set-up knows in the group that is being worked on.
    struct Progress {
        std::uint32_t group = 0;
        std::uint32_t observed = 0; ///< places with a position that it observes
        std::uint32_t sighted = 0;  ///< those that it sights
        bool waiting = false;       ///< stands in the queue
        bool placed = false;
    };

    /// Moves `next` to the first set-up from there on with sights that is not placed and suits.
    template <class Suits>
    bool FindNext(std::uint32_t& next, Suits suits) const {
        for (; next < survey_.occupations.size(); ++next) {
            const Occupation& occupation = survey_.occupations[next];
            if (occupation.hasSights && !progress_[next].placed && suits(occupation))
                return true;
        }
        return false;
    }

    void RunFixedGroup() {
        Begin();
        for (std::uint32_t i = 0; i < survey_.places.size(); ++i) {
            const Place& place = survey_.places[i];
            if (place.IsFixed())
                Hold(i, place.coordinates.x, place.coordinates.y, place.coordinates.z);
        }
        PlaceWaiting();
        std::uint32_t next = 0;
        while (FindNext(next,
                        [&](const Occupation& o) { return survey_.places[o.place].IsFixed(); })) {
            PlaceByCircle(next);
            PlaceWaiting();
        }
        End(true);
    }

    void RunGroupFrom(std::uint32_t first) {
        Begin();
        Hold(survey_.occupations[first].place, 0, 0, 0);
        PlaceByCircle(first);
        PlaceWaiting();
        End(false);
    }

    void Begin() {
        ++group_;
        members_.clear();
        settled_.clear();
    }

    bool HasPosition(std::uint32_t place) const { return states_[place].group == group_; }

    /// The place, which from now on has a position in the group; true where it had none.
    bool Enter(std::uint32_t place) {
        if (HasPosition(place))
            return false;
        states_[place] = {};
        states_[place].group = group_;
        members_.push_back(place);
        return true;
    }

    void Hold(std::uint32_t place, double east, double north, double height) {
        const bool isNew = Enter(place);
        State& state = states_[place];
        state.held = true;
        state.east = east;
        state.north = north;
        state.height = height;
        if (isNew)
            Tell(place);
    }

    void AddSight(std::uint32_t place, double east, double north, double height) {
        const bool isNew = Enter(place);
        State& state = states_[place];
        if (!state.held) {
            state.eastSum += east;
            state.northSum += north;
            state.heightSum += height;
            state.count += 1;
            state.east = state.eastSum / state.count;
            state.north = state.northSum / state.count;
            state.height = state.heightSum / state.count;
        }
        if (isNew)
            Tell(place);
    }

    /// Tells the set-ups that have to do with a place that it has a position.
    void Tell(std::uint32_t place) {
        for (const auto [index, kind] : visits_.Of(place)) {
            Progress& progress = progress_[index];
            if (progress.placed)
                continue;
            if (progress.group != group_)
                progress = {.group = group_};
            progress.observed += kind == Visit::StandsOn ? 0 : 1;
            progress.sighted += kind == Visit::Sights ? 1 : 0;
            const bool stands = HasPosition(survey_.occupations[index].place);
            const bool canBe = stands ? progress.observed >= 1 : progress.sighted >= 2;
            if (canBe && !progress.waiting) {
                progress.waiting = true;
                waiting_.push(index);
            }
        }
    }

    void PlaceWaiting() {
        while (!waiting_.empty()) {
            const std::uint32_t index = waiting_.top();
            waiting_.pop();
            progress_[index].waiting = false;
            const Occupation& occupation = survey_.occupations[index];
            Setting setting;
            const bool stands = HasPosition(occupation.place);
            if (!progress_[index].placed &&
                (stands ? Orient(occupation, setting) : Resect(occupation, setting)))
                Settle(index, setting);
        }
    }

    /// The turn of a set-up on a place with a position: the mean to all places that it observes.
    bool Orient(const Occupation& occupation, Setting& setting) const {
        const State& stood = states_[occupation.place];
        TurnSum sum;
        for (const Sight& sight : survey_.SightsOf(occupation)) {
            if (!HasPosition(sight.place))
                continue;
            const double east = states_[sight.place].east - stood.east;
            const double north = states_[sight.place].north - stood.north;
            const double length = Length(east, north);
            // A direction has length 1 and counts by the distance in plan, a sight by its own.
            if (std::isfinite(length) && length > 0)
                sum.Add(sight, east, north, sight.directionOnly ? 1 : 1 / length);
        }
        setting.east = stood.east;
        setting.north = stood.north;
        return sum.Get(setting.turn);
    }

    /// Free station: turn and shift by least squares over the sights to places with a position.
    bool Resect(const Occupation& occupation, Setting& setting) const {
        double count = 0;
        Sight seen{};
        double east = 0;
        double north = 0;
        const auto forEach = [&](auto work) {
            for (const Sight& sight : survey_.SightsOf(occupation)) {
                if (!sight.directionOnly && HasPosition(sight.place))
                    work(sight, states_[sight.place]);
            }
        };
        forEach([&](const Sight& sight, const State& place) {
            count += 1;
            seen.east += sight.east;
            seen.north += sight.north;
            east += place.east;
            north += place.north;
        });
        seen.east /= count;
        seen.north /= count;
        east /= count;
        north /= count;
        TurnSum sum;
        forEach([&](const Sight& sight, const State& place) {
            Sight centred = sight;
            centred.east -= seen.east;
            centred.north -= seen.north;
            sum.Add(centred, place.east - east, place.north - north, 1);
        });
        if (!sum.Get(setting.turn))
            return false;
        setting.east = east - setting.turn.East(seen);
        setting.north = north - setting.turn.North(seen);
        return true;
    }

    /// Places a set-up on a place with a position by its circle alone.
    void PlaceByCircle(std::uint32_t index) {
        const Occupation& occupation = survey_.occupations[index];
        const double orientation = std::fmod(occupation.orientation, 400) * std::numbers::pi / 200;
        const State& stood = states_[occupation.place];
        Settle(index, {.east = stood.east,
                       .north = stood.north,
                       .turn = {Sin(orientation), Cos(orientation)}});
    }

    double HeightOf(const Occupation& occupation) const {
        if (HasPosition(occupation.place) && IsPresent(states_[occupation.place].height))
            return states_[occupation.place].height;
        double sum = 0;
        double count = 0;
        for (const Sight& sight : survey_.SightsOf(occupation)) {
            if (sight.directionOnly || !HasPosition(sight.place) ||
                !IsPresent(states_[sight.place].height))
                continue;
            sum += states_[sight.place].height - sight.rise;
            count += 1;
        }
        return count > 0 ? sum / count : 0;
    }

    /// From here on neither the set-up nor its place is moved. A given place without a height stays
    /// without: what its set-up works with is no height of the place.
    void Settle(std::uint32_t index, Setting setting) {
        const Occupation& occupation = survey_.occupations[index];
        setting.height = HeightOf(occupation);
        progress_[index].placed = true;
        settings_[index] = setting;
        settled_.push_back(index);
        const bool held = HasPosition(occupation.place) && states_[occupation.place].held;
        if (!held)
            Hold(occupation.place, setting.east, setting.north, setting.height);
        for (const Sight& sight : survey_.SightsOf(occupation)) {
            if (!sight.directionOnly)
                AddSight(sight.place, setting.east + setting.turn.East(sight),
                         setting.north + setting.turn.North(sight), setting.height + sight.rise);
        }
    }

    /// Writes the group into the plan.
    void End(bool fixed) {
        std::ranges::sort(members_);
        const std::size_t first = plan_.places.size();
        rowOf_.resize(survey_.places.size());
        for (const std::uint32_t index : members_) {
            const Place& place = survey_.places[index];
            const State& state = states_[index];
            rowOf_[index] = plan_.places.size();
            plan_.places.push_back({.name = place.name,
                                    .code = place.code,
                                    .east = state.east,
                                    .north = state.north,
                                    .height = state.height,
                                    .stoodOn = place.stoodOn,
                                    .line = place.line});
        }
        plan_.groups.push_back({.job = job_,
                                .number = group_,
                                .fixed = fixed,
                                .first = first,
                                .end = plan_.places.size()});
        AddLinesAndSpreads();
        for (std::size_t i = first; i < plan_.places.size(); ++i)
            Round(plan_.places[i]);
    }

    void AddLinesAndSpreads() {
        const auto begin = static_cast<std::ptrdiff_t>(plan_.lines.size());
        for (const std::uint32_t index : settled_) {
            const Occupation& occupation = survey_.occupations[index];
            const Setting& setting = settings_[index];
            const std::size_t stood = rowOf_[occupation.place];
            for (const Sight& sight : survey_.SightsOf(occupation)) {
                if (sight.directionOnly)
                    continue;
                const std::size_t row = rowOf_[sight.place];
                plan_.lines.push_back({std::min(stood, row), std::max(stood, row)});
                Placed& placed = plan_.places[row];
                const double off = Length(setting.east + setting.turn.East(sight) - placed.east,
                                          setting.north + setting.turn.North(sight) - placed.north);
                placed.spread = placed.sights == 0 ? off : std::max(placed.spread, off);
                ++placed.sights;
            }
        }
        const auto first = plan_.lines.begin() + begin;
        std::sort(first, plan_.lines.end(), [](const SightLine& a, const SightLine& b) {
            return std::pair(a.from, a.to) < std::pair(b.from, b.to);
        });
        const auto same = [](const SightLine& a, const SightLine& b) {
            return a.from == b.from && a.to == b.to;
        };
        plan_.lines.erase(std::unique(first, plan_.lines.end(), same), plan_.lines.end());
    }

    static void Round(Placed& placed) {
        for (double* value : {&placed.east, &placed.north, &placed.height, &placed.spread})
            *value = FiniteOrNoValue(ArrotondatoAtDec(*value, kDecimals));
    }

    const Survey& survey_;
    std::size_t job_;
    Plan& plan_;
    Visits visits_;
    std::vector<State> states_;
    std::vector<Progress> progress_;
    std::vector<Setting> settings_;
    std::vector<std::size_t> rowOf_;

    std::uint32_t group_ = 0;
    std::vector<std::uint32_t> members_; ///< places with a position in the group
    std::vector<std::uint32_t> settled_; ///< set-ups placed in it
    std::priority_queue<std::uint32_t, std::vector<std::uint32_t>, std::greater<>> waiting_;
};

} // namespace

Plan MakePlan(const Work& work) {
    Plan plan;
    const KnownPlaces known = KnownPlacesOf(work);
    for (std::size_t job = 0; job < work.jobs.size(); ++job) {
        const Survey survey = SurveyOf(work.jobs[job], known);
        JobPlanner(survey, job, plan).Run();
    }
    return plan;
}

} // namespace convfile::exports
