// The plan over jobs whose true coordinates are known: what instruments would have read is worked
// out from them, and the plan must find them again.

#include "export/Plan.h"
#include "routines/Reduction.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <map>
#include <numbers>
#include <string>

namespace convfile::test {
namespace {

using namespace convfile::exports;
using testing::ElementsAre;

constexpr double kTolerance = 1.5e-4; // rounded to tenths of a millimetre

struct Truth {
    double east, north, height;
};
using Truths = std::map<std::string, Truth>;

/// Works out what a surveyor writes down in a field of known places.
class Surveyor {
public:
    explicit Surveyor(Truths truths) : truths_(std::move(truths)) { work_.jobs.emplace_back(); }

    /// Sets the instrument up; the zero of its circle points there (gon), to north if not said.
    Surveyor& At(const std::string& name, double zero = 0, double instrumentHeight = 1.5) {
        at_ = truths_.at(name);
        zero_ = zero;
        SetUp& setUp = work_.jobs.back().setUps.emplace_back();
        setUp.name = Keep(name.substr(0, name.find('\'')));
        setUp.instrumentHeight = instrumentHeight;
        return *this;
    }
    /// Sights what is at a true place; it is written down by the name before its first apostrophe.
    Surveyor& See(const std::string& name, bool secondFace = false) {
        constexpr double kTargetHeight = 1.8;
        const Truth& to = truths_.at(name);
        const double e = to.east - at_.east;
        const double n = to.north - at_.north;
        Point& point = Last().points.emplace_back();
        point.name = Keep(name.substr(0, name.find('\'')));
        point.targetHeight = kTargetHeight;
        const double rise =
            to.height + kTargetHeight - at_.height - ValueOrZero(Last().instrumentHeight);
        const double gon = 200 / std::numbers::pi;
        point.reading = {std::sqrt(e * e + n * n + rise * rise),
                         std::atan2(std::hypot(e, n), rise) * gon, std::atan2(e, n) * gon - zero_};
        if (secondFace) {
            point.reading.zenithAngle = 400 - point.reading.zenithAngle;
            point.reading.horizontalAngle += 200;
        }
        return *this;
    }
    Surveyor& Direction(const std::string& name, bool secondFace = false) {
        See(name, secondFace).LastPoint().reading.slopeDistance = kNoValue;
        return *this;
    }
    Surveyor& Known(const std::string& name) {
        const Truth& truth = truths_.at(name);
        work_.knownPoints.push_back({Keep(name), {truth.east, truth.north, truth.height}});
        return *this;
    }

    SetUp& Last() { return work_.jobs.back().setUps.back(); }
    Point& LastPoint() { return Last().points.back(); }
    Work& TheWork() { return work_; }

private:
    std::string_view Keep(const std::string& text) { return texts_.emplace_back(text); }

    Truths truths_;
    Work work_;
    std::deque<std::string> texts_;
    Truth at_{};
    double zero_ = 0;
};

/// The place of that name in that group.
const Placed& Find(const Plan& plan, std::string_view name, std::size_t group = 0) {
    static const Placed none;
    if (group >= plan.groups.size())
        return none;
    for (std::size_t i = plan.groups[group].first; i < plan.groups[group].end; ++i) {
        if (plan.places[i].name == name)
            return plan.places[i];
    }
    return none;
}

void ExpectAt(const Placed& placed, const Truth& truth) {
    EXPECT_NEAR(placed.east, truth.east, kTolerance) << placed.name;
    EXPECT_NEAR(placed.north, truth.north, kTolerance) << placed.name;
    EXPECT_NEAR(placed.height, truth.height, kTolerance) << placed.name;
}

std::vector<std::string> NamesOf(const Plan& plan, std::size_t group) {
    std::vector<std::string> names;
    for (std::size_t i = plan.groups.at(group).first; i < plan.groups.at(group).end; ++i)
        names.emplace_back(plan.places[i].name);
    return names;
}

const Truths kField = {
    {"A", {2000, 5000, 100}},       {"B", {2100, 5030, 102}},        {"C", {2150, 4930, 99}},
    {"D", {2060, 4880, 97}},        {"1", {2040, 5055, 103.5}},      {"2", {2120, 5080, 110}},
    {"3", {2170, 4990, 95.25}},     {"T", {2900.25, 5800.5, 160.0}}, {"1'", {2041.5, 5055, 103.5}},
    {"1''", {2040.4, 5055, 103.5}}, {"4", {2020, 4900, 101}},
};

TEST(Plan, TraverseFromAKnownStationFindsTheTruth) {
    Surveyor surveyor(kField);
    surveyor.Known("A").Known("T");
    surveyor.At("A", 123.4).See("T").See("B").See("1");
    surveyor.At("B", 311).See("A").See("C").See("2");
    surveyor.At("C", 17.5, 1.623).See("B").See("3").See("D");
    const Plan plan = MakePlan(surveyor.TheWork());
    ASSERT_EQ(plan.groups.size(), 1U);
    EXPECT_TRUE(plan.groups[0].fixed);
    EXPECT_THAT(NamesOf(plan, 0), ElementsAre("A", "T", "B", "1", "C", "2", "3", "D"));
    for (const Placed& placed : plan.places)
        ExpectAt(placed, kField.at(std::string(placed.name)));
    EXPECT_TRUE(Find(plan, "C").stoodOn);
    EXPECT_FALSE(Find(plan, "D").stoodOn);
    EXPECT_EQ(Find(plan, "B").sights, 2U);
    EXPECT_NEAR(Find(plan, "B").spread, 0, kTolerance);
    EXPECT_EQ(plan.lines.size(), 7U) << "A-B and B-C were observed from both ends";
}

TEST(Plan, PlacesTheFirstThatCanBeWhateverTheOrderOfTheFile) {
    Surveyor surveyor(kField);
    surveyor.Known("A").Known("T");
    surveyor.At("D", 50).See("C").See("4");
    surveyor.At("C", 17.5).See("B").See("D");
    surveyor.At("B", 311).See("A").See("C");
    surveyor.At("A", 123.4).Direction("T").See("B");
    const Plan plan = MakePlan(surveyor.TheWork());
    ASSERT_EQ(plan.groups.size(), 1U);
    EXPECT_THAT(NamesOf(plan, 0), ElementsAre("D", "C", "4", "B", "A", "T"));
    for (const Placed& placed : plan.places)
        ExpectAt(placed, kField.at(std::string(placed.name)));
    EXPECT_EQ(Find(plan, "T").sights, 0U) << "a direction orients and is no sight";
    EXPECT_FALSE(IsPresent(Find(plan, "T").spread));
}

TEST(Plan, FreeStationNeedsSightsToTwoPlaces) {
    Surveyor surveyor(kField);
    surveyor.Known("A").Known("B").Known("T");
    surveyor.At("C", 250).See("A").See("B").See("3");
    surveyor.At("D", 250).See("A").Direction("B").See("4");
    const Plan plan = MakePlan(surveyor.TheWork());
    ASSERT_EQ(plan.groups.size(), 2U);
    EXPECT_THAT(NamesOf(plan, 0), ElementsAre("C", "A", "B", "3"));
    for (const char* name : {"C", "3"})
        ExpectAt(Find(plan, name), kField.at(name));
    EXPECT_FALSE(plan.groups[1].fixed);
    EXPECT_EQ(plan.groups[1].number, 2U);
    EXPECT_THAT(NamesOf(plan, 1), ElementsAre("A", "D", "4")) << "A is known here by its own sight";
    ExpectAt(Find(plan, "D", 1), {0, 0, 0});
}

TEST(Plan, FreeStationIsTheBestFitWithoutScale) {
    // Three places in a row, sighted as if they lay 1 cm farther apart: the middle stays.
    Truths seen = {
        {"S", {0, 0, 0}}, {"L", {-100.01, 50, 0}}, {"M", {0, 50, 0}}, {"R", {100.01, 50, 0}}};
    Surveyor surveyor(seen);
    surveyor.At("S", 77).See("L").See("M").See("R");
    auto& known = surveyor.TheWork().knownPoints;
    known = {{"L", {-100, 50, kNoValue}}, {"M", {0, 50, 12}}, {"R", {100, 50, 14}}};
    const Plan plan = MakePlan(surveyor.TheWork());
    ExpectAt(Find(plan, "S"), {0, 0, 13}); // the mean of what the two heights say
    EXPECT_NEAR(Find(plan, "L").spread, 0.01, kTolerance);
    EXPECT_FALSE(IsPresent(Find(plan, "L").height)) << "none was given";
}

TEST(Plan, BothFacesAreOneSightEach) {
    Surveyor surveyor(kField);
    surveyor.At("A", 0).See("1").See("1", true).See("B").Direction("C", true);
    surveyor.LastPoint().reading.zenithAngle += 400; // whole turns change nothing
    surveyor.Known("A").Known("C");
    surveyor.At("B", 33).See("A", true).See("2", true);
    const Plan plan = MakePlan(surveyor.TheWork());
    ASSERT_EQ(plan.groups.size(), 1U);
    EXPECT_EQ(Find(plan, "1").sights, 2U);
    for (const char* name : {"1", "2", "B"})
        ExpectAt(Find(plan, name), kField.at(name));
}

TEST(Plan, AngleAndDistanceWeighTheTurn) {
    // Two places, 300 m and 100 m off; the circle fits the far one, and is 0.04 gon off at the near
    // one: a quarter of that goes into the turn.
    Surveyor surveyor(
        {{"A", {0, 0, 0}}, {"F", {0, 300, 0}}, {"N", {100, 0, 0}}, {"P", {0, 100, 0}}});
    surveyor.Known("A").Known("F").Known("N");
    surveyor.At("A").See("F").See("N");
    surveyor.LastPoint().reading.horizontalAngle -= 0.04;
    surveyor.See("P");
    EXPECT_NEAR(Find(MakePlan(surveyor.TheWork()), "P").east, 100 * 0.01 * std::numbers::pi / 200,
                kTolerance);
    surveyor.Last().points[0].reading.slopeDistance = kNoValue; // a direction weighs as much
    EXPECT_NEAR(Find(MakePlan(surveyor.TheWork()), "P").east, 100 * 0.01 * std::numbers::pi / 200,
                kTolerance);
}

TEST(Plan, SetUpIsNotMovedOncePlaced) {
    Truths field = kField;
    field["1'"] = {2039.7, 5055.125, 103.5}; // seen from B, behind it
    Surveyor surveyor(field);
    surveyor.Known("A").Known("B");
    surveyor.At("A", 10).See("B").See("1");
    surveyor.At("1", 20).See("A").See("2");
    surveyor.At("B", 30).See("A").See("1'");
    const Plan plan = MakePlan(surveyor.TheWork());
    ExpectAt(Find(plan, "1"), kField.at("1"));
    ExpectAt(Find(plan, "2"), kField.at("2"));
    EXPECT_EQ(Find(plan, "1").sights, 2U);
    EXPECT_NEAR(Find(plan, "1").spread, 0.325, kTolerance);
}

TEST(Plan, GroupsThatNothingConnectsStandByThemselves) {
    Surveyor surveyor(kField);
    surveyor.At("A", 0).See("1").See("2");
    surveyor.At("C", 0).See("3").See("2");
    surveyor.Last().orientation = 100;
    surveyor.At("B", 0).See("C"); // only the place stood on has a position: a group of its own
    const Plan plan = MakePlan(surveyor.TheWork());
    ASSERT_EQ(plan.groups.size(), 3U);
    EXPECT_EQ(plan.groups[0].number, 1U);
    EXPECT_EQ(plan.groups[2].number, 3U);
    EXPECT_THAT(NamesOf(plan, 1), ElementsAre("2", "C", "3"));
    ExpectAt(Find(plan, "1"), {40, 55, 3.5});
    ExpectAt(Find(plan, "3", 1), {60, -20, -3.75}); // turned by a right angle, clockwise
    EXPECT_EQ(Find(plan, "2", 0).sights, 1U);
    EXPECT_TRUE(Find(plan, "C", 2).stoodOn) << "by some set-up of the job";
}

TEST(Plan, OnAGivenPlaceTheCircleAloneOrients) {
    Surveyor surveyor(kField);
    surveyor.At("B", 100).See("2");
    surveyor.Last().coordinates = {2100, 5030, kNoValue};
    surveyor.Last().orientation = 100;
    surveyor.At("A").See("1");
    surveyor.Last().coordinates = {2000, 5000, 100};
    const Plan plan = MakePlan(surveyor.TheWork());
    ASSERT_EQ(plan.groups.size(), 1U);
    ExpectAt(Find(plan, "1"), kField.at("1"));
    ExpectAt(Find(plan, "2"), {2120, 5080, 8}); // from a height that is not known: 0
    EXPECT_FALSE(IsPresent(Find(plan, "B").height));
}

TEST(Plan, KnownPointsGoBeforeTheRecordsOwnCoordinates) {
    Work work;
    work.knownPoints = {{"P", {1, kNoValue, 3}},
                        {"P", {1, 2, kNoValue}},
                        {"P", {7, 8, 9}},
                        {"NOBODY", {1, 1, 1}},
                        {"", {5, 5, 5}}};
    work.jobs.resize(1);
    work.jobs[0].setUps.resize(2);
    auto& first = work.jobs[0].setUps[0];
    first.points = {{.name = "P", .coordinates = {10, 20, 30}},
                    {.name = "Q", .coordinates = {kNoValue, 20, 30}},
                    {.name = "Q", .code = "KERB", .coordinates = {11, 21, 31}},
                    {.name = "Q", .code = "WALL", .coordinates = {12, 22, 32}}};
    const Plan plan = MakePlan(work);
    EXPECT_THAT(NamesOf(plan, 0), ElementsAre("P", "Q"));
    EXPECT_EQ(Find(plan, "P").north, 2);
    EXPECT_FALSE(IsPresent(Find(plan, "P").height)) << "the point that gave x and y had none";
    ExpectAt(Find(plan, "Q"), {11, 21, 31});
    EXPECT_EQ(Find(plan, "Q").code, "KERB");
    EXPECT_TRUE(plan.lines.empty());
}

TEST(Plan, OneNameForTwoPointsIsNoPlace) {
    Surveyor surveyor(kField);
    surveyor.Known("A").Known("B").Known("1");
    surveyor.At("A", 10).See("B").See("1").See("1'").Direction("1");
    surveyor.At("C", 10).See("1").See("B"); // from here "1" is one place, and given
    surveyor.At("D", 10).See("4").See("1").See("1''");
    const Plan plan = MakePlan(surveyor.TheWork());
    ASSERT_EQ(plan.groups.size(), 2U);
    EXPECT_THAT(NamesOf(plan, 0), ElementsAre("A", "B", "1", "1", "1", "C"));
    EXPECT_NEAR(plan.places[2].east, 2040, kTolerance);
    EXPECT_NEAR(plan.places[3].east, 2041.5, kTolerance);
    EXPECT_EQ(plan.places[2].sights, 1U);
    EXPECT_EQ(plan.places[4].sights, 1U) << "the given one, from C";
    ExpectAt(Find(plan, "C"), kField.at("C"));
    EXPECT_EQ(Find(plan, "1", 1).sights, 2U) << "half a metre apart is one place";
    EXPECT_NEAR(Find(plan, "1", 1).spread, 0.2, kTolerance);
}

TEST(Plan, RecordsWithoutNamesAndSightsAtOneself) {
    Surveyor surveyor(kField);
    surveyor.At("A").See("1").See("2").See("A");
    for (Point& point : surveyor.Last().points) {
        if (point.name != "A")
            point.name = {};
    }
    surveyor.At("B").See("3");
    surveyor.Last().name = {};
    const Plan plan = MakePlan(surveyor.TheWork());
    ASSERT_EQ(plan.groups.size(), 2U);
    EXPECT_THAT(NamesOf(plan, 0), ElementsAre("A", "", ""));
    EXPECT_THAT(NamesOf(plan, 1), ElementsAre("", "3"));
    EXPECT_EQ(plan.places[0].sights, 0U);
}

TEST(Plan, WithoutSightsThereIsNothing) {
    EXPECT_TRUE(MakePlan({}).groups.empty());
    Surveyor surveyor(kField);
    surveyor.At("A").Direction("1").See("2").See("3").See("B");
    auto& points = surveyor.Last().points;
    points[1].reading.slopeDistance = 0;
    points[2].reading.zenithAngle = kNoValue;
    points[3].reading.horizontalAngle = kNoValue;
    const Plan plan = MakePlan(surveyor.TheWork());
    EXPECT_TRUE(plan.groups.empty());
    EXPECT_TRUE(plan.places.empty());
}

TEST(Plan, JobsAreApart) {
    Surveyor surveyor(kField);
    surveyor.Known("1").Known("2");
    surveyor.At("A").See("1").See("2").See("3");
    surveyor.TheWork().jobs.emplace_back();
    surveyor.At("B").See("3");
    const Plan plan = MakePlan(surveyor.TheWork());
    ASSERT_EQ(plan.groups.size(), 2U);
    EXPECT_EQ(plan.groups[1].job, 1U);
    EXPECT_EQ(plan.groups[1].number, 1U);
    EXPECT_FALSE(plan.groups[1].fixed);
    EXPECT_THAT(NamesOf(plan, 1), ElementsAre("B", "3"));
}

TEST(Plan, NonsenseGivesNoNumbersThatAreNone) {
    const double inf = std::numeric_limits<double>::infinity();
    for (const double odd : {1e199, -1e300, inf, -inf, std::nan(""), 1e-310, -0.0, 5e15}) {
        Surveyor surveyor(kField);
        surveyor.Known("A");
        surveyor.At("A").See("1").See("2");
        surveyor.At("B").See("1").See("2").See("1");
        for (int i = 0; i < 14; ++i) {
            Work work = surveyor.TheWork();
            auto& setUp = work.jobs[0].setUps[static_cast<std::size_t>(i % 2)];
            Point& point = setUp.points[static_cast<std::size_t>(i % 2)];
            double* const values[] = {&setUp.instrumentHeight,
                                      &setUp.coordinates.x,
                                      &point.targetHeight,
                                      &point.reading.slopeDistance,
                                      &point.reading.zenithAngle,
                                      &point.reading.horizontalAngle,
                                      &work.knownPoints[0].coordinates.y};
            *values[i / 2] = odd;
            for (const Placed& placed : MakePlan(work).places) {
                for (const double value : {placed.east, placed.north, placed.height, placed.spread})
                    EXPECT_TRUE(std::isfinite(value)) << odd << " " << i;
            }
        }
    }
}

TEST(Plan, LongChainInTheWorstOrderIsFollowed) {
    constexpr int kSetUps = 3000;
    Truths field;
    for (int i = 0; i <= kSetUps; ++i)
        field[std::to_string(i)] = {50.0 * i, 10.0 * (i % 7), 0};
    Surveyor surveyor(field);
    surveyor.Known(std::to_string(kSetUps)).Known(std::to_string(kSetUps - 1));
    for (int i = 1; i < kSetUps; ++i)
        surveyor.At(std::to_string(i), i).See(std::to_string(i - 1)).See(std::to_string(i + 1));
    const Plan plan = MakePlan(surveyor.TheWork());
    ASSERT_EQ(plan.groups.size(), 1U);
    EXPECT_NEAR(Find(plan, "0").east, 0, 0.01);
}

} // namespace
} // namespace convfile::test
