#include "export/CsvTable.h"

#include "export/CsvFields.h"

namespace convfile::exports {

namespace {

constexpr std::string_view kObservationsHead =
    "file,job,station,station_code,instrument_height,point,code,target_height,slope_distance,"
    "zenith_angle,horizontal_angle,note,line";

void WritePoint(OutputBuffer& out, const Point& point) {
    WriteField(out, point.name);
    out.Put(',');
    WriteField(out, point.code);
    out.Put(',');
    WriteField(out, point.targetHeight);
    out.Put(',');
    WriteField(out, point.reading.slopeDistance);
    out.Put(',');
    WriteField(out, point.reading.zenithAngle);
    out.Put(',');
    WriteField(out, point.reading.horizontalAngle);
    out.Put(',');
    WriteField(out, point.note);
    out.Put(',');
    WriteLine(out, point.line);
    out.Write(kCsvLineEnd);
}

} // namespace

CsvTable::CsvTable(OutputBuffer& out) : out_(out) {
    out_.Write(kObservationsHead);
    out_.Write(kCsvLineEnd);
}

void CsvTable::Add(const Work& work) {
    const std::string file = CsvFieldOfUtf8(work.file);
    for (const Job& job : work.jobs) {
        for (const SetUp& setUp : job.setUps) {
            std::string head = file + "," + CsvField(job.name) + "," + CsvField(setUp.name) + "," +
                               CsvField(setUp.code) + ",";
            if (IsPresent(setUp.instrumentHeight))
                head += ShortestNumber(setUp.instrumentHeight);
            head += ",";
            for (const Point& point : setUp.points) {
                out_.Write(head);
                WritePoint(out_, point);
            }
            if (setUp.points.empty()) {
                out_.Write(head);
                WritePoint(out_, {.line = setUp.line});
            }
        }
    }
}

} // namespace convfile::exports
