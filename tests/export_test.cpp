// Tables and drawings, made from small works: what stands in them, and that odd texts do no harm.

#include "export/Output.h"
#include "routines/OutputBuffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <utility>

namespace convfile::test {
namespace {

using namespace convfile::exports;
using testing::HasSubstr;
using testing::Not;

/// What that kind of output is for these files.
std::string Made(std::string_view kind, const std::vector<Work>& works) {
    std::ostringstream stream;
    OutputBuffer out(stream);
    const auto output = FindOutputKind(kind)->make(out);
    for (const Work& work : works)
        output->Add(work);
    out.Flush();
    return stream.str();
}

Point Sighted(std::string_view name, double distance, double horizontalAngle) {
    return {.name = name, .reading = {distance, 100, horizontalAngle}};
}

TEST(CsvTable, HasARowForEachObservation) {
    Work work{.file = "a,b.gsi"};
    work.jobs.resize(2);
    work.jobs[0].name = "Citt\xE0 \"2\"";
    work.jobs[0].setUps.resize(2);
    auto& first = work.jobs[0].setUps[0];
    first.name = "S1";
    first.code = "NAIL";
    first.instrumentHeight = 1.545;
    first.points = {{.name = "1,5",
                     .code = "\x80\x81",
                     .note = "two\nlines",
                     .targetHeight = 0,
                     .reading = {12.5, 100.12345, 1.0 / 3},
                     .line = 7},
                    {.name = " 2 ", .reading = {1e-7, kNoValue, -std::nan("")}}};
    work.jobs[0].setUps[1].name = "S2";
    work.jobs[0].setUps[1].line = 9;
    EXPECT_EQ(Made("csv", {work, {.file = "empty.gsi"}}),
              "file,job,station,station_code,instrument_height,point,code,target_height,"
              "slope_distance,zenith_angle,horizontal_angle,note,line\r\n"
              "\"a,b.gsi\",\"Citt\u00E0 \"\"2\"\"\",S1,NAIL,1.545,\"1,5\",\u20AC\u0081,0,12.5,"
              "100.12345,0.3333333333333333,\"two\nlines\",7\r\n"
              "\"a,b.gsi\",\"Citt\u00E0 \"\"2\"\"\",S1,NAIL,1.545, 2 ,,,1e-07,,,,\r\n"
              "\"a,b.gsi\",\"Citt\u00E0 \"\"2\"\"\",S2,,,,,,,,,,9\r\n");
}

TEST(PointsTable, HasARowForEachPlace) {
    Work work{.file = "a.gsi"};
    work.jobs.resize(1);
    work.jobs[0].name = "SITE";
    work.jobs[0].setUps.resize(2);
    auto& first = work.jobs[0].setUps[0];
    first.name = "S1";
    first.coordinates = {1000, 5000, kNoValue};
    first.points = {Sighted("P\xE8", 10, 100), Sighted("P\xE8", 10.0003, 100)};
    first.points[1].code = "KERB";
    auto& second = work.jobs[0].setUps[1];
    second.points = {Sighted("7", 2.00006, 0)};
    EXPECT_EQ(Made("points", {work, {.file = "empty.gsi"}}),
              "name,east,north,height,code,kind,group,sights,spread,file,job\r\n"
              "S1,1000,5000,,,station,1,0,,a.gsi,SITE\r\n"
              "P\u00E8,1010.0002,5000,0,KERB,point,1,2,0.0002,a.gsi,SITE\r\n"
              ",0,0,0,,station,2,0,,a.gsi,SITE\r\n"
              "7,0,2.0001,0,,point,2,1,0,a.gsi,SITE\r\n");
}

/// A work with one station and these points around it.
Work OneStation(std::vector<Point> points) {
    Work work{.file = "a.gsi"};
    work.jobs.resize(1);
    work.jobs[0].setUps.resize(1);
    work.jobs[0].setUps[0].name = "S1";
    work.jobs[0].setUps[0].points = std::move(points);
    return work;
}

TEST(DxfDrawing, TextsStayWhatTheyAre) {
    const std::string dxf =
        Made("dxf", {OneStation({Sighted("100%%d", 10, 0), Sighted("5%", 10, 90),
                                 Sighted("a^J", 10, 180), Sighted("Citt\xE0\r\n\x81", 10, 270),
                                 Sighted(std::string(300, 'x'), 10, 360)})});
    EXPECT_THAT(dxf, HasSubstr("\r\n  1\r\n100%%%%%%d\r\n"));
    EXPECT_THAT(dxf, HasSubstr("\r\n  1\r\n5%\r\n"));
    EXPECT_THAT(dxf, HasSubstr("\r\n  1\r\na^ J\r\n"));
    EXPECT_THAT(dxf, HasSubstr("\r\n  1\r\nCitt\xE0   \r\n"));
    EXPECT_THAT(dxf, HasSubstr("\r\n  1\r\n" + std::string(255, 'x') + "\r\n"));
}

TEST(DxfDrawing, NumbersAreReal) {
    const std::string dxf =
        Made("dxf", {OneStation({Sighted("1", 10, 100), Sighted("2", 1e20, 0)})});
    EXPECT_THAT(dxf, HasSubstr("POINTS\r\n 10\r\n10.0\r\n 20\r\n0.0\r\n 30\r\n0.0\r\n"));
    EXPECT_THAT(dxf, HasSubstr("\r\n1e+20\r\n"));
}

TEST(Drawings, SayThatThereIsNothing) {
    Work work{.file = "empty & <odd>\x01.gsi"};
    for (const std::size_t jobs : {0U, 1U}) {
        work.jobs.resize(jobs);
        EXPECT_THAT(Made("dxf", {work}), HasSubstr("TEXT\r\n  8\r\nLABELS\r\n"));
        EXPECT_THAT(Made("dxf", {work}), HasSubstr("Nothing to draw"));
        const std::string svg = Made("svg", {work});
        EXPECT_THAT(svg, HasSubstr("<title>empty &amp; &lt;odd&gt; .gsi</title>"));
        EXPECT_THAT(svg, HasSubstr(">Nothing to draw"));
    }
}

TEST(SvgDrawing, KeepsNamesWithoutRoomAsTitles) {
    std::vector<std::string> names;
    for (int i = 0; i < 400; ++i)
        names.push_back("P" + std::to_string(i));
    std::vector<Point> points;
    for (std::size_t i = 0; i < names.size(); ++i)
        points.push_back(Sighted(names[i], 50, 0.001 * static_cast<double>(i)));
    points.push_back(Sighted("R&D \"\x80\"\r", 50, 200));
    points.back().line = 17;
    const std::string svg = Made("svg", {OneStation(points)});
    for (const std::string& name : names)
        EXPECT_THAT(svg, HasSubstr("<title>" + name + "</title>"));
    EXPECT_THAT(svg, HasSubstr(">P0</text>"));
    EXPECT_THAT(svg, HasSubstr(">S1</text>"));
    EXPECT_THAT(svg, Not(HasSubstr(">P20</text>"))) << "eight fit around the spot";
    EXPECT_THAT(svg, HasSubstr(" data-line=\"17\"><title>R&amp;D \"\u20AC\"&#13;</title>"));
    EXPECT_THAT(svg, HasSubstr(">10 m</text>"));
}

TEST(SvgDrawing, OnePlaceAndFarPlacesHaveASheet) {
    for (const double distance : {0.0, 1e-9, 1e3, 1e9, 1e150}) {
        Work work = OneStation({Sighted("1", distance, 50)});
        work.jobs[0].setUps[0].coordinates = {1e6, 5e6, 100};
        const std::string svg = Made("svg", {work});
        EXPECT_THAT(svg, HasSubstr(" m</text>")) << distance;
        EXPECT_THAT(svg, Not(HasSubstr("nan"))) << distance;
        EXPECT_THAT(svg, Not(HasSubstr("inf"))) << distance;
        EXPECT_LT(svg.size(), 4000U) << distance;
    }
}

} // namespace
} // namespace convfile::test
