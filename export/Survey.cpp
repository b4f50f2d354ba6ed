#include "export/Survey.h"

#include "routines/Angles.h"
#include "routines/Trigonometry.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace convfile::exports {

namespace {

constexpr double kRadiansInGon = std::numbers::pi / 200;
constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

/// Sights of one set-up to one name that are farther apart in plan, metres, are not one place.
constexpr double kSamePlace = 1;

bool IsNumber(double value) {
    return IsPresent(value) && value > -kPresentBelow;
}

double NumberOrZero(double value) {
    return IsNumber(value) ? value : 0;
}

bool HasPlan(const Coordinates& coordinates) {
    return IsNumber(coordinates.x) && IsNumber(coordinates.y);
}

/// Coordinates without what is no number.
Coordinates Cleaned(const Coordinates& given) {
    return {given.x, given.y, IsNumber(given.z) ? given.z : kNoValue};
}

enum class Observed { Nothing, Direction, Sight };

/// What a record says of where its point is, seen from the set-up.
Observed Reduce(const Point& point, double instrumentHeight, Sight& sight) {
    const Reading& reading = point.reading;
    if (!IsNumber(reading.horizontalAngle))
        return Observed::Nothing;
    const bool hasZenith = IsNumber(reading.zenithAngle);
    double zenith = hasZenith ? LimiteAng0_400(reading.zenithAngle) : 100;
    double circle = LimiteAng0_400(reading.horizontalAngle);
    if (zenith > 200) { // second face
        zenith = 400 - zenith;
        circle = LimiteAng0_400(circle - 200);
    }
    sight.east = Sin(circle * kRadiansInGon);
    sight.north = Cos(circle * kRadiansInGon);
    if (!hasZenith || !IsNumber(reading.slopeDistance) || reading.slopeDistance <= 0)
        return Observed::Direction;
    sight.distance = reading.slopeDistance * Sin(zenith * kRadiansInGon);
    sight.east *= sight.distance;
    sight.north *= sight.distance;
    sight.rise = reading.slopeDistance * Cos(zenith * kRadiansInGon) +
                 NumberOrZero(instrumentHeight) - NumberOrZero(point.targetHeight);
    return Observed::Sight;
}

class SurveyMaker {
public:
    SurveyMaker(const KnownPlaces& known, Survey& survey) : known_(known), survey_(survey) {}

    void Add(const SetUp& setUp) {
        ++setUp_;
        const std::uint32_t stood = Attach(setUp, setUp.name.empty() ? nullptr : Find(setUp.name));
        survey_.places[stood].stoodOn = true;
        Occupation occupation{.place = stood,
                              .firstSight = NextSight(),
                              .endSight = 0,
                              .hasSights = false,
                              .orientation = NumberOrZero(setUp.orientation)};
        ReduceAll(setUp);
        for (std::size_t i = 0; i < setUp.points.size(); ++i)
            occupation.hasSights =
                AddPoint(setUp.points[i], seen_[i], stood) || occupation.hasSights;
        occupation.endSight = NextSight();
        survey_.occupations.push_back(occupation);
    }

private:
    struct Name {
        std::uint32_t place = kNone;
        std::uint32_t setUp = 0;       ///< that sighted it last, and where it was then
        std::uint32_t scatteredAt = 0; ///< the set-up from which it is no one place
        double east = 0;
        double north = 0;
    };
    struct Seen {
        Observed observed;
        Name* name; ///< null for a point without one
        Sight sight;
    };

    std::uint32_t NextSight() const { return static_cast<std::uint32_t>(survey_.sights.size()); }

    Name* Find(std::string_view name) { return &names_[name]; }

    /// What a set-up saw, and which of the names are no place from there: that has to be known
    /// before the first of them is given to a place.
    void ReduceAll(const SetUp& setUp) {
        seen_.clear();
        for (const Point& point : setUp.points) {
            Seen& seen = seen_.emplace_back();
            seen.observed = Reduce(point, setUp.instrumentHeight, seen.sight);
            seen.name = point.name.empty() ? nullptr : Find(point.name);
            if (!seen.name || seen.observed != Observed::Sight || point.name == setUp.name)
                continue;
            Name& name = *seen.name;
            if (name.setUp != setUp_) {
                name.setUp = setUp_;
                name.east = seen.sight.east;
                name.north = seen.sight.north;
                continue;
            }
            const double de = seen.sight.east - name.east;
            const double dn = seen.sight.north - name.north;
            if (de * de + dn * dn > kSamePlace * kSamePlace)
                name.scatteredAt = setUp_;
        }
    }

    /// True where the record is a sight.
    bool AddPoint(const Point& point, const Seen& seen, std::uint32_t stood) {
        const bool scattered = seen.name && seen.name->scatteredAt == setUp_;
        const bool alone = scattered && seen.observed == Observed::Sight;
        const std::uint32_t place = Attach(point, alone ? nullptr : seen.name);
        const bool isDirection = seen.observed == Observed::Direction && !scattered;
        if (place == stood || (seen.observed != Observed::Sight && !isDirection))
            return false;
        Sight& sight = survey_.sights.emplace_back(seen.sight);
        sight.place = place;
        sight.directionOnly = isDirection;
        return !isDirection;
    }

    /// Gives a record to the place of its name, to one of its own without.
    template <class Record>
    std::uint32_t Attach(const Record& record, Name* name) {
        std::uint32_t index = name ? name->place : kNone;
        if (index == kNone) {
            index = static_cast<std::uint32_t>(survey_.places.size());
            Place& place = survey_.places.emplace_back(Place{.name = record.name});
            place.line = record.line;
            if (name) {
                name->place = index;
                if (const auto found = known_.find(record.name); found != known_.end())
                    place.coordinates = found->second;
            }
        }
        Place& place = survey_.places[index];
        if (place.code.empty())
            place.code = record.code;
        if (!place.IsFixed() && HasPlan(record.coordinates))
            place.coordinates = Cleaned(record.coordinates);
        return index;
    }

    const KnownPlaces& known_;
    Survey& survey_;
    std::unordered_map<std::string_view, Name> names_;
    std::vector<Seen> seen_;  ///< of one set-up
    std::uint32_t setUp_ = 0; ///< its number, from 1
};

} // namespace

KnownPlaces KnownPlacesOf(const Work& work) {
    KnownPlaces known;
    for (const KnownPoint& point : work.knownPoints) {
        if (!point.name.empty() && HasPlan(point.coordinates))
            known.emplace(point.name, Cleaned(point.coordinates));
    }
    return known;
}

Survey SurveyOf(const Job& job, const KnownPlaces& known) {
    Survey survey;
    SurveyMaker maker(known, survey);
    for (const SetUp& setUp : job.setUps)
        maker.Add(setUp);
    return survey;
}

} // namespace convfile::exports
