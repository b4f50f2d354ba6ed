#include "export/PointsTable.h"

#include "export/CsvFields.h"
#include "export/Plan.h"

namespace convfile::exports {

namespace {

constexpr std::string_view kPointsHead =
    "name,east,north,height,code,kind,group,sights,spread,file,job";

void WritePlaced(OutputBuffer& out, const Placed& placed, std::uint32_t group) {
    WriteField(out, placed.name);
    out.Put(',');
    WriteField(out, placed.east);
    out.Put(',');
    WriteField(out, placed.north);
    out.Put(',');
    WriteField(out, placed.height);
    out.Put(',');
    WriteField(out, placed.code);
    out.Write(placed.stoodOn ? ",station," : ",point,");
    out.WriteNumber(group);
    out.Put(',');
    out.WriteNumber(placed.sights);
    out.Put(',');
    WriteField(out, placed.spread);
}

} // namespace

PointsTable::PointsTable(OutputBuffer& out) : out_(out) {
    out_.Write(kPointsHead);
    out_.Write(kCsvLineEnd);
}

void PointsTable::Add(const Work& work) {
    const Plan plan = MakePlan(work);
    const std::string file = CsvFieldOfUtf8(work.file);
    for (const Group& group : plan.groups) {
        const std::string tail =
            "," + file + "," + CsvField(work.jobs[group.job].name) + std::string(kCsvLineEnd);
        for (std::size_t i = group.first; i < group.end; ++i) {
            WritePlaced(out_, plan.places[i], group.number);
            out_.Write(tail);
        }
    }
}

} // namespace convfile::exports
