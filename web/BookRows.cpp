#include "web/BookRows.h"

#include "host/NoValue.h"
#include "views/Display.h"
#include "views/TableOutput.h"

#include <algorithm>
#include <string>

namespace convfile::web {

namespace {

using namespace convfile::memory;
using views::Shown;
using views::ShownAngle;
using views::ShownLength;
using views::ShownNumber;

/// The cells of a row, a text for each column.
struct Cells {
    std::string name = {};
    std::string code = {};
    std::string height = {};
    std::string slopeDistance = {};
    std::string zenithAngle = {};
    std::string horizontalAngle = {};
    std::string x = {};
    std::string y = {};
    std::string z = {};
    std::string note = {};

    /// Appends to the note what has no column of its own.
    void Add(std::string_view label, const std::string& shown) {
        if (shown.empty())
            return;
        if (!note.empty())
            note += "; ";
        if (!label.empty())
            note += std::string(label) + " ";
        note += shown;
    }
};

std::string Present(double value, std::string (*shown)(double)) {
    return IsPresent(value) ? shown(value) : std::string();
}

void AddExtras(Cells& cells, const Extras& extras) {
    cells.Add("", Shown(extras.note));
    if (extras.coordinatesSet) {
        cells.x = ShownLength(extras.coordinates.x);
        cells.y = ShownLength(extras.coordinates.y);
        cells.z = ShownLength(extras.coordinates.z);
    }
    cells.Add("marks", views::ShownMarks(extras.marks));
    for (const Photo& photo : extras.photos)
        cells.Add("photo", Shown(photo.path));
    cells.Add("terrain note", Shown(extras.terrainNote));
    cells.Add("attribute", Shown(extras.drawingAttribute));
}

Cells CellsOf(const Job& job) {
    Cells cells{.name = Shown(job.Name())};
    cells.Add("operator", Shown(job.Operator()));
    cells.Add("instrument", Shown(job.Instrument()));
    cells.Add("date", Shown(job.Date()));
    if (job.ProcessingCode() != 0)
        cells.Add("processing code", std::to_string(job.ProcessingCode()));
    return cells;
}

Cells CellsOf(const Station& station) {
    Cells cells{.name = Shown(station.GetNome()),
                .code = Shown(station.Identifier()),
                .height = ShownLength(station.InstrumentHeight())};
    cells.Add("orientation", Present(station.Orientation(), ShownAngle));
    cells.Add("temperature", Present(station.Temperature(), ShownNumber));
    cells.Add("pressure", Present(station.Pressure(), ShownNumber));
    AddExtras(cells, station.GetExtras());
    return cells;
}

Cells CellsOf(const Point& point) {
    Cells cells{.name = Shown(point.GetNome()),
                .code = Shown(point.Code()),
                .height = ShownLength(point.TargetHeight()),
                .slopeDistance = ShownLength(point.SlopeDistance()),
                .zenithAngle = ShownAngle(point.ZenithAngle()),
                .horizontalAngle = ShownAngle(point.HorizontalAngle())};
    AddExtras(cells, point.GetExtras());
    return cells;
}

Cells CellsOf(const OrientationPoint& point) {
    Cells cells{.name = Shown(point.GetNome())};
    if (point.Reliability())
        cells.Add("reliability", std::to_string(*point.Reliability()));
    cells.Add("", Shown(point.Comment()));
    AddExtras(cells, point.GetExtras());
    return cells;
}

Cells CellsOf(const CadastralDocument& document) {
    Cells cells{.name = Shown(document.protocol)};
    cells.Add("date", Shown(document.day + "/" + document.month + "/" + document.year));
    cells.Add("municipality", Shown(document.municipalityCode));
    cells.Add("sheet", Shown(document.sheet));
    cells.Add("parcel", Shown(document.parcel));
    cells.Add("surveyor",
              Shown(document.surveyorSurname + (document.surveyorFirstName.empty() ? "" : " ") +
                    document.surveyorFirstName));
    cells.Add("qualification", Shown(document.qualification));
    cells.Add("province", Shown(document.province));
    return cells;
}

Cells CellsOf(const CRig& line) {
    constexpr int kMostVertices = 50; // the rest is in the outputs
    Cells cells{.name = Shown(line.GetLblNome1()), .code = Shown(line.GetLblMater())};
    const char type = line.GetTipoRiga();
    cells.Add("type", Shown({&type, 1}));
    cells.Add("", Shown(line.GetLblNome2()));
    const auto addNumber = [&](std::string_view label, double value) {
        if (value != 0)
            cells.Add(label, ShownNumber(value));
    };
    addNumber("real 1", line.GetDatoRea1());
    addNumber("real 2", line.GetDatoRea2());
    addNumber("integer 1", line.GetDatoInt1());
    addNumber("integer 2", line.GetDatoInt2());
    std::string vertices;
    for (int i = 0; i < std::min(line.GetVrtArSize(), kMostVertices); ++i)
        vertices += (i > 0 ? " " : "") + Shown(line.GetVrtAt(i)->name);
    if (line.GetVrtArSize() > kMostVertices)
        vertices += " ... (" + std::to_string(line.GetVrtArSize()) + ")";
    cells.Add("vertices", vertices);
    return cells;
}

constexpr std::string_view kKinds[] = {"document", "job", "station", "point", "known", "line"};

template <class Record>
const Record& As(const void* record) {
    return *static_cast<const Record*>(record);
}

} // namespace

BookRows::BookRows(const views::Conversion& conversion) : conversion_(conversion) {
    if (conversion.cadastral)
        Add(RowKind::Document, 0, &conversion.document);
    const auto& jobs = conversion.fieldBook.Jobs();
    for (std::size_t i = 0; i < jobs.size(); ++i) {
        Add(RowKind::Job, i, jobs[i].get());
        for (const auto& station : jobs[i]->stations) {
            Add(RowKind::Station, i, station.get());
            for (const auto& point : station->points)
                Add(RowKind::Point, i, point.get());
        }
    }
    for (const auto& point : conversion.fieldBook.OrientationPoints())
        Add(RowKind::Known, 0, point.get());
    firstLine_ = static_cast<std::uint32_t>(rows_.size());
    if (conversion.cadastral) {
        for (const CRig& line : conversion.document.lines)
            Add(RowKind::Line, 0, &line);
    }
    for (std::uint32_t row = 0; row < rows_.size(); ++row) {
        if (const std::uint64_t line = LineOf(row); line != 0)
            byLine_.emplace_back(line, row);
    }
    std::ranges::sort(byLine_);
}

void BookRows::Add(RowKind kind, std::size_t job, const void* record) {
    rows_.push_back({kind, static_cast<std::uint32_t>(job), record});
}

std::uint64_t BookRows::LineOf(std::size_t row) const {
    const Row& of = rows_[row];
    switch (of.kind) {
    case RowKind::Document:
        return 0;
    case RowKind::Job:
        return As<Job>(of.record).Line();
    case RowKind::Station:
        return As<Station>(of.record).Line();
    case RowKind::Point:
        return As<Point>(of.record).Line();
    case RowKind::Known:
        return As<OrientationPoint>(of.record).Line();
    case RowKind::Line:
        break;
    }
    const auto& numbers = conversion_.document.lineNumbers;
    const std::size_t index = row - firstLine_;
    return index < numbers.size() ? numbers[index] : 0;
}

std::string_view BookRows::NameOf(std::size_t row) const {
    const Row& of = rows_[row];
    if (of.kind == RowKind::Station)
        return As<Station>(of.record).GetNome();
    if (of.kind == RowKind::Point)
        return As<Point>(of.record).GetNome();
    return {};
}

std::size_t BookRows::RowOfLine(std::uint64_t line) const {
    const auto behind =
        std::ranges::upper_bound(byLine_, line, {}, [](const auto& of) { return of.first; });
    if (behind == byLine_.begin())
        return Size();
    const std::uint64_t found = std::prev(behind)->first;
    // The first of those that the line gave.
    return std::ranges::lower_bound(byLine_, found, {}, [](const auto& of) { return of.first; })
        ->second;
}

std::size_t BookRows::RowOf(std::uint64_t line, std::string_view name) const {
    const auto sameLine =
        std::ranges::equal_range(byLine_, line, {}, [](const auto& of) { return of.first; });
    for (const auto& [ignored, row] : sameLine) {
        if (IsStationOrPoint(row) && NameOf(row) == name)
            return row;
    }
    return Size();
}

void BookRows::WriteHeads(views::JsonWriter<false>& json) const {
    const std::string length = " [" + conversion_.account.lengthUnit + "]";
    const std::string angle = " [" + conversion_.account.angleUnit + "]";
    json.StartArray();
    json.Utf8("Name");
    json.Utf8("Code");
    json.Utf8("Height" + length);
    json.Utf8("Slope distance" + length);
    json.Utf8("Zenith angle" + angle);
    json.Utf8("Horizontal angle" + angle);
    json.Utf8("East X [m]");
    json.Utf8("North Y [m]");
    json.Utf8("Height Z [m]");
    json.Utf8("Note");
    json.EndArray();
}

void BookRows::WriteRow(views::JsonWriter<false>& json, std::size_t row) const {
    const Row& of = rows_[row];
    Cells cells;
    switch (of.kind) {
    case RowKind::Document:
        cells = CellsOf(As<CadastralDocument>(of.record));
        break;
    case RowKind::Job:
        cells = CellsOf(As<Job>(of.record));
        break;
    case RowKind::Station:
        cells = CellsOf(As<Station>(of.record));
        break;
    case RowKind::Point:
        cells = CellsOf(As<Point>(of.record));
        break;
    case RowKind::Known:
        cells = CellsOf(As<OrientationPoint>(of.record));
        break;
    case RowKind::Line:
        cells = CellsOf(As<CRig>(of.record));
        break;
    }
    json.StartArray();
    json.Utf8(kKinds[static_cast<std::size_t>(of.kind)]);
    json.Integer(LineOf(row));
    for (const std::string* cell :
         {&cells.name, &cells.code, &cells.height, &cells.slopeDistance, &cells.zenithAngle,
          &cells.horizontalAngle, &cells.x, &cells.y, &cells.z, &cells.note})
        json.Utf8(*cell);
    json.EndArray();
}

} // namespace convfile::web
