// Tables and drawings, made from small works: what stands in them, and that odd texts do no harm.

#include "export/Output.h"
#include "routines/OutputBuffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

namespace convfile::test {
namespace {

using namespace convfile::exports;
using testing::HasSubstr;
using testing::StartsWith;

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

} // namespace
} // namespace convfile::test
