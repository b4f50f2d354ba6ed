#include "views/TableOutput.h"

#include "host/NoValue.h"
#include "views/CadastralTable.h"
#include "views/Display.h"
#include "views/Remarks.h"
#include "views/TextTable.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace convfile::views {

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
                counts.withoutZenith += IsPresent(point->ZenithAngle()) ? 0 : 1;
                counts.withoutHorizontal += IsPresent(point->HorizontalAngle()) ? 0 : 1;
            }
        }
    }
    return counts;
}

/// A message in one line, wherever its text breaks.
std::string ShownMessage(const Message& message) {
    std::string text = message.text;
    std::ranges::replace(text, '\n', ' ');
    const auto bothBlank = [](char left, char right) { return left == ' ' && right == ' '; };
    text.erase(std::unique(text.begin(), text.end(), bothBlank), text.end());
    std::string shown = "[" + Shown(message.title) + "] " + Shown(text);
    if (message.hasLink)
        shown += " " + Shown(message.linkLabel) + ": " + Shown(message.linkTarget);
    return shown;
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
    std::string line = ShownUtf8(BareName(conversion.path)) + ": ";
    line += conversion.converted ? ShownCounts(conversion.fieldBook) : "not converted";
    if (conversion.converted && conversion.foundByContent)
        line += "; read as " + conversion.account.format + ", by its content";
    for (const Message& message : conversion.messages)
        line += "; " + ShownMessage(message);
    sink.Write(line + "\n");
    PrintRemarks(sink, conversion.account);
}

std::string_view NameOrUnnamed(const std::string& name) {
    return name.empty() ? std::string_view("(unnamed)") : name;
}

std::string ShownCoordinates(const Extras& extras) {
    if (!extras.coordinatesSet)
        return {};
    const Coordinates& place = extras.coordinates;
    return ShownNumber(place.x) + " " + ShownNumber(place.y) + " " + ShownNumber(place.z);
}

std::string ShownPhotos(const std::vector<Photo>& photos) {
    std::string shown;
    for (const Photo& photo : photos) {
        shown += (shown.empty() ? "" : ", ") + Shown(photo.path) + " (" +
                 std::to_string(photo.kind) + ")";
    }
    return shown;
}

/// A column's name with the unit that its values are in.
std::string Head(const char* name, const std::string& unit) {
    return std::string(name) + " [" + unit + "]";
}

/// The columns for what every entity may have.
template <class Record>
void AddExtraColumns(std::vector<Column<Record>>& columns) {
    const auto add = [&](const char* head, std::string (*cell)(const Record&)) {
        columns.push_back({.head = head, .cell = cell, .ofExtras = true, .optional = true});
    };
    add("Note", [](const Record& r) { return Shown(r.GetExtras().note); });
    add("X Y Z [m]", [](const Record& r) { return ShownCoordinates(r.GetExtras()); });
    add("Marks", [](const Record& r) { return ShownMarks(r.GetExtras().marks); });
    add("Photos", [](const Record& r) { return ShownPhotos(r.GetExtras().photos); });
    add("Terrain note", [](const Record& r) { return Shown(r.GetExtras().terrainNote); });
    add("Attribute", [](const Record& r) { return Shown(r.GetExtras().drawingAttribute); });
}

/// A column of lengths or angles.
template <class Record>
Column<Record> Numbers(const char* name, const std::string& unit, int decimals,
                       double (*number)(const Record&)) {
    return {
        .head = Head(name, unit), .align = Align::Right, .number = number, .decimals = decimals};
}

TextTable<Point> PointTable(const FileAccount& units) {
    std::vector<Column<Point>> columns = {
        {.head = "Point", .text = [](const Point& p) -> std::string_view { return p.GetNome(); }},
        {.head = "Code", .text = [](const Point& p) -> std::string_view { return p.Code(); }},
        Numbers<Point>("Target height", units.lengthUnit, kLengthDecimals,
                       [](const Point& p) { return p.TargetHeight(); }),
        Numbers<Point>("Slope distance", units.lengthUnit, kLengthDecimals,
                       [](const Point& p) { return p.SlopeDistance(); }),
        Numbers<Point>("Zenith angle", units.angleUnit, kAngleDecimals,
                       [](const Point& p) { return p.ZenithAngle(); }),
        Numbers<Point>("Horizontal angle", units.angleUnit, kAngleDecimals,
                       [](const Point& p) { return p.HorizontalAngle(); }),
    };
    AddExtraColumns(columns);
    return TextTable<Point>(std::move(columns));
}

TextTable<Station> StationTable(const FileAccount& units) {
    std::vector<Column<Station>> columns = {
        {.head = "Station", .text = [](const Station& s) { return NameOrUnnamed(s.GetNome()); }},
        {.head = "Code",
         .text = [](const Station& s) -> std::string_view { return s.Identifier(); }},
        Numbers<Station>("Instrument height", units.lengthUnit, kLengthDecimals,
                         [](const Station& s) { return s.InstrumentHeight(); }),
        {.head = "Temperature",
         .align = Align::Right,
         .cell = [](const Station& s) { return ShownNumber(s.Temperature()); }},
        {.head = "Pressure",
         .align = Align::Right,
         .cell = [](const Station& s) { return ShownNumber(s.Pressure()); }},
        {.head = "Orientation [gon]",
         .align = Align::Right,
         .cell =
             [](const Station& s) {
                 return IsPresent(s.Orientation()) ? ShownAngle(s.Orientation()) : std::string();
             },
         .optional = true},
    };
    AddExtraColumns(columns);
    return TextTable<Station>(std::move(columns));
}

void PrintJobHead(Sink& sink, const Job& job) {
    std::string line = "\nJob " + Shown(NameOrUnnamed(job.Name()));
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

void PrintFieldBook(Sink& sink, const FieldBook& book, const FileAccount& units) {
    TextTable<Station> stations = StationTable(units);
    TextTable<Point> points = PointTable(units);
    for (const auto& job : book.Jobs()) {
        for (const auto& station : job->stations) {
            stations.Measure(*station);
            for (const auto& point : station->points)
                points.Measure(*point);
        }
    }
    stations.FindWidths();
    points.FindWidths();
    constexpr std::size_t kIndent = 2;
    for (const auto& job : book.Jobs()) {
        PrintJobHead(sink, *job);
        for (const auto& station : job->stations) {
            sink.Put('\n');
            stations.PrintHead(sink, kIndent);
            stations.Print(sink, *station, kIndent);
            if (!station->points.empty())
                points.PrintHead(sink, 2 * kIndent);
            for (const auto& point : station->points)
                points.Print(sink, *point, 2 * kIndent);
        }
    }
}

void PrintOrientationPoints(Sink& sink, const FieldBook& book) {
    const auto& points = book.OrientationPoints();
    if (points.empty())
        return;
    std::vector<Column<OrientationPoint>> columns = {
        {.head = "Point",
         .text = [](const OrientationPoint& p) -> std::string_view { return p.GetNome(); }},
        {.head = "Reliability",
         .align = Align::Right,
         .cell =
             [](const OrientationPoint& p) {
                 return p.Reliability() ? std::to_string(*p.Reliability()) : std::string();
             },
         .optional = true},
        {.head = "Comment",
         .text = [](const OrientationPoint& p) -> std::string_view { return p.Comment(); },
         .optional = true},
    };
    AddExtraColumns(columns);
    TextTable<OrientationPoint> table(std::move(columns));
    for (const auto& point : points)
        table.Measure(*point);
    table.FindWidths();
    constexpr std::size_t kIndent = 2;
    sink.Write("\nOrientation points\n");
    table.PrintHead(sink, kIndent);
    for (const auto& point : points)
        table.Print(sink, *point, kIndent);
}

} // namespace

std::string ShownMarks(const Marks& marks) {
    std::string shown;
    for (std::size_t i = 0; i < kMarkCount; ++i) {
        if (marks.test(i))
            shown += (shown.empty() ? "" : " ") + std::string(kMarkNames[i]);
    }
    return shown;
}

void SummaryOutput::Write(const Conversion& conversion) {
    PrintSummary(Out(), conversion);
    Out().Flush();
}

void TableOutput::Separate() {
    if (!first_)
        Out().Put('\n');
    first_ = false;
}

void TableOutput::Write(const Conversion& conversion) {
    Sink& sink = Out();
    PrintSummary(sink, conversion);
    if (conversion.cadastral)
        PrintCadastralHeader(sink, conversion.document);
    PrintFieldBook(sink, conversion.fieldBook, conversion.account);
    if (conversion.cadastral)
        PrintCadastralLines(sink, conversion.document);
    PrintOrientationPoints(sink, conversion.fieldBook);
    sink.Flush();
}

} // namespace convfile::views
