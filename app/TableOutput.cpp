#include "app/TableOutput.h"

#include "app/CadastralTable.h"
#include "app/Display.h"
#include "app/TextTable.h"
#include "host/NoValue.h"

#include <string>

namespace convfile::app {

namespace {

using namespace convfile::memory;

std::string Counted(std::size_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

/// How much a field book holds, and how much of it lacks a measurement.
struct Counts {
    std::size_t stations = 0;
    std::size_t points = 0;
    std::size_t withoutDistance = 0;
    std::size_t withoutZenith = 0;
    std::size_t withoutHorizontal = 0;
};

Counts CountsOf(const FieldBook& book) {
    Counts counts;
    for (const auto& job : book.Jobs()) {
        counts.stations += job->stations.size();
        for (const auto& station : job->stations) {
            counts.points += station->points.size();
            for (const auto& point : station->points) {
                counts.withoutDistance += IsPresent(point->SlopeDistance()) ? 0 : 1;
                counts.withoutZenith += IsPresent(point->VerticalAngle()) ? 0 : 1;
                counts.withoutHorizontal += IsPresent(point->HorizontalAngle()) ? 0 : 1;
            }
        }
    }
    return counts;
}

/// A message text may have several lines; they are shown indented below each other.
void PrintMessage(Sink& sink, const Message& message) {
    sink.Write("  [" + Shown(message.title) + "] ");
    std::string_view rest = message.text;
    for (std::size_t end = rest.find('\n'); end != rest.npos; end = rest.find('\n')) {
        if (end > 0)
            sink.Write(Shown(rest.substr(0, end)) + "\n    ");
        rest.remove_prefix(end + 1);
    }
    sink.Write(Shown(rest) + "\n");
    if (message.hasLink)
        sink.Write("    " + Shown(message.linkLabel) + ": " + Shown(message.linkTarget) + "\n");
}

std::string ShownCounts(const FieldBook& book) {
    const Counts counts = CountsOf(book);
    std::string shown = Counted(book.Jobs().size(), "job", "jobs") + ", " +
                        Counted(counts.stations, "station", "stations") + ", " +
                        Counted(counts.points, "point", "points") + " (without distance " +
                        std::to_string(counts.withoutDistance) + ", without zenith angle " +
                        std::to_string(counts.withoutZenith) + ", without horizontal angle " +
                        std::to_string(counts.withoutHorizontal) + ")";
    const std::size_t orientationPoints = book.OrientationPoints().size();
    if (orientationPoints > 0)
        shown += ", " + Counted(orientationPoints, "orientation point", "orientation points");
    return shown;
}

void PrintSummary(Sink& sink, const Conversion& conversion) {
    sink.Write(ShownUtf8(BareName(conversion.path)) + ": ");
    if (!conversion.converted)
        sink.Write("not converted");
    else
        sink.Write(ShownCounts(conversion.fieldBook));
    sink.Put('\n');
    for (const Message& message : conversion.messages)
        PrintMessage(sink, message);
}

std::string ShownCoordinates(const Extras& extras) {
    if (!extras.coordinatesSet)
        return {};
    const Coordinates& place = extras.coordinates;
    return ShownNumber(place.x) + " " + ShownNumber(place.y) + " " + ShownNumber(place.z);
}

std::string ShownMarks(const Marks& marks) {
    std::string shown;
    for (std::size_t i = 0; i < kMarkCount; ++i) {
        if (marks.test(i))
            shown += (shown.empty() ? "" : " ") + std::string(kMarkNames[i]);
    }
    return shown;
}

std::string ShownPhotos(const std::vector<Photo>& photos) {
    std::string shown;
    for (const Photo& photo : photos) {
        shown += (shown.empty() ? "" : ", ") + Shown(photo.path) + " (" +
                 std::to_string(photo.kind) + ")";
    }
    return shown;
}

template <class Record>
Column<Record> CoordinatesColumn() {
    return {"X Y Z [m]", Align::Left,
            [](const Record& r) { return ShownCoordinates(r.GetExtras()); }, true};
}

TextTable<Point> PointTable() {
    const auto text = [](auto member) {
        return [member](const Point& p) { return Shown(p.GetExtras().*member); };
    };
    return TextTable<Point>({
        {"Point", Align::Left, [](const Point& p) { return Shown(p.GetNome()); }},
        {"Code", Align::Left, [](const Point& p) { return Shown(p.Code()); }},
        {"Target height [m]", Align::Right,
         [](const Point& p) { return ShownLength(p.TargetHeight()); }},
        {"Slope distance [m]", Align::Right,
         [](const Point& p) { return ShownLength(p.SlopeDistance()); }},
        {"Zenith angle [gon]", Align::Right,
         [](const Point& p) { return ShownAngle(p.VerticalAngle()); }},
        {"Horizontal angle [gon]", Align::Right,
         [](const Point& p) { return ShownAngle(p.HorizontalAngle()); }},
        {"Note", Align::Left, text(&Extras::note), true},
        CoordinatesColumn<Point>(),
        {"Marks", Align::Left, [](const Point& p) { return ShownMarks(p.GetMarks()); }, true},
        {"Photos", Align::Left, [](const Point& p) { return ShownPhotos(p.GetExtras().photos); },
         true},
        {"Terrain note", Align::Left, text(&Extras::terrainNote), true},
        {"Attribute", Align::Left, text(&Extras::drawingAttribute), true},
    });
}

void PrintStationHead(Sink& sink, const Station& station) {
    const std::string name = Shown(station.GetNome());
    std::string line = "\n  Station " + (name.empty() ? "(unnamed)" : name);
    if (!station.Identifier().empty())
        line += "  code " + Shown(station.Identifier());
    line += "  instrument height [m] " + ShownLength(station.InstrumentHeight()) +
            "  temperature " + ShownNumber(station.Temperature()) + "  pressure " +
            ShownNumber(station.Pressure());
    if (IsPresent(station.Orientation()))
        line += "  orientation [gon] " + ShownAngle(station.Orientation());
    const std::string place = ShownCoordinates(station.GetExtras());
    if (!place.empty())
        line += "  X Y Z [m] " + place;
    sink.Write(line + "\n");
}

void PrintJobHead(Sink& sink, const Job& job) {
    std::string line = "\nJob " + Shown(job.Name());
    const auto add = [&](const char* label, const std::string& text) {
        if (!text.empty())
            line += std::string("  ") + label + " " + Shown(text);
    };
    add("operator", job.Operator());
    add("instrument", job.Instrument());
    add("date", job.Date());
    if (job.ProcessingCode() != 0)
        add("processing code", std::to_string(job.ProcessingCode()));
    sink.Write(line + "\n");
}

void PrintFieldBook(Sink& sink, const FieldBook& book) {
    TextTable<Point> table = PointTable();
    for (const auto& job : book.Jobs()) {
        for (const auto& station : job->stations) {
            for (const auto& point : station->points)
                table.Measure(*point);
        }
    }
    for (const auto& job : book.Jobs()) {
        PrintJobHead(sink, *job);
        for (const auto& station : job->stations) {
            PrintStationHead(sink, *station);
            if (!station->points.empty())
                table.PrintHead(sink);
            for (const auto& point : station->points)
                table.Print(sink, *point);
        }
    }
}

void PrintOrientationPoints(Sink& sink, const FieldBook& book) {
    const auto& points = book.OrientationPoints();
    if (points.empty())
        return;
    TextTable<OrientationPoint> table({
        {"Point", Align::Left, [](const OrientationPoint& p) { return Shown(p.GetNome()); }},
        CoordinatesColumn<OrientationPoint>(),
        {"Reliability", Align::Right,
         [](const OrientationPoint& p) {
             return p.Reliability() ? std::to_string(*p.Reliability()) : std::string();
         },
         true},
        {"Comment", Align::Left, [](const OrientationPoint& p) { return Shown(p.Comment()); },
         true},
    });
    for (const auto& point : points)
        table.Measure(*point);
    sink.Write("\nOrientation points\n");
    table.PrintHead(sink);
    for (const auto& point : points)
        table.Print(sink, *point);
}

} // namespace

void SummaryOutput::Add(const Conversion& conversion) {
    PrintSummary(sink_, conversion);
    sink_.Flush();
}

void TableOutput::Add(const Conversion& conversion) {
    if (!first_)
        sink_.Put('\n');
    first_ = false;
    PrintSummary(sink_, conversion);
    if (conversion.cadastral)
        PrintCadastralHeader(sink_, conversion.document);
    PrintFieldBook(sink_, conversion.fieldBook);
    if (conversion.cadastral)
        PrintCadastralLines(sink_, conversion.document);
    PrintOrientationPoints(sink_, conversion.fieldBook);
    sink_.Flush();
}

} // namespace convfile::app
