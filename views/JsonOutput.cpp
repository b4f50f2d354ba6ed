#include "views/JsonOutput.h"

#include "routines/FileName.h"
#include "views/JsonWriter.h"

#include <cstdint>
#include <string_view>

namespace convfile::views {

namespace {

using namespace convfile::memory;

/// Writes one conversion, member by member, compact or indented.
template <class Writer>
class JsonObject {
public:
    JsonObject(Writer& writer, JsonParts parts) : json_(writer), parts_(parts) {}

    void Write(const Conversion& conversion) {
        json_.StartObject();
        Utf8("file", BareName(conversion.path));
        json_.Key("converted");
        json_.Bool(conversion.converted);
        if (parts_ == JsonParts::All) {
            Utf8("format", conversion.account.format);
            json_.Key("account");
            WriteAccount(conversion.account);
            Utf8("path", Utf8OfName(conversion.path));
            if (!conversion.converted)
                Utf8("problem", conversion.problem);
        }
        Array("messages", conversion.messages, &JsonObject::WriteMessage);
        Array("jobs", conversion.fieldBook.Jobs(), &JsonObject::WriteJob);
        const auto& orientationPoints = conversion.fieldBook.OrientationPoints();
        if (!orientationPoints.empty())
            Array("orientation_points", orientationPoints, &JsonObject::WriteOrientationPoint);
        if (conversion.cadastral)
            WriteCadastral(conversion.document);
        json_.EndObject();
    }

    void WriteAccount(const FileAccount& account) {
        json_.StartObject();
        Count("lines", account.lines);
        Count("read", account.read);
        Count("skipped", account.skipped);
        Array("remarks", account.remarks, &JsonObject::WriteRemark);
        json_.EndObject();
    }

private:
    void WriteRemark(const Remark& remark) {
        json_.StartObject();
        Utf8("kind", NameOf(remark.kind));
        Text("text", remark.text);
        Count("count", remark.count);
        json_.Key("lines");
        json_.StartArray();
        for (const std::uint64_t line : remark.lines)
            json_.Integer(line);
        json_.EndArray();
        json_.EndObject();
    }

    void Count(std::string_view name, std::uint64_t count) {
        json_.Key(name);
        json_.Integer(count);
    }

    /// The line that a record comes from, where a line gave it.
    void Line(std::uint64_t line) {
        if (line != 0 && parts_ == JsonParts::All)
            Count("line", line);
    }

    void Utf8(std::string_view name, std::string_view text) {
        json_.Key(name);
        json_.Utf8(text);
    }

    void Text(std::string_view name, std::string_view bytes) {
        json_.Key(name);
        json_.Text(bytes);
    }

    void Integer(std::string_view name, int value) {
        json_.Key(name);
        json_.Integer(value);
    }

    void Number(std::string_view name, double value) {
        json_.Key(name);
        json_.Number(value);
    }

    template <class Records, class Record>
    void Array(std::string_view name, const Records& records,
               void (JsonObject::*write)(const Record&)) {
        json_.Key(name);
        json_.StartArray();
        for (const auto& record : records) {
            if constexpr (requires { *record; })
                (this->*write)(*record);
            else
                (this->*write)(record);
        }
        json_.EndArray();
    }

    void WriteMessage(const Message& message) {
        json_.StartObject();
        Text("title", message.title);
        Text("text", message.text);
        if (message.hasLink) {
            Text("link_label", message.linkLabel);
            Text("link_target", message.linkTarget);
        }
        json_.EndObject();
    }

    void WriteJob(const Job& job) {
        json_.StartObject();
        Text("name", job.Name());
        Line(job.Line());
        Text("operator", job.Operator());
        Text("instrument", job.Instrument());
        Text("date", job.Date());
        Integer("processing_code", job.ProcessingCode());
        Array("stations", job.stations, &JsonObject::WriteStation);
        json_.EndObject();
    }

    void WriteStation(const Station& station) {
        json_.StartObject();
        Text("name", station.GetNome());
        Line(station.Line());
        Text("code", station.Identifier());
        if (!station.GetExtras().note.empty())
            Text("note", station.GetExtras().note);
        Number("instrument_height", station.InstrumentHeight());
        Number("temperature", station.Temperature());
        Number("pressure", station.Pressure());
        Number("orientation", station.Orientation());
        WriteRest(station);
        Array("points", station.points, &JsonObject::WritePoint);
        json_.EndObject();
    }

    void WritePoint(const Point& point) {
        json_.StartObject();
        Text("name", point.GetNome());
        Line(point.Line());
        Text("code", point.Code());
        Text("note", point.GetExtras().note);
        Number("target_height", point.TargetHeight());
        Number("slope_distance", point.SlopeDistance());
        Number("zenith_angle", point.ZenithAngle());
        Number("horizontal_angle", point.HorizontalAngle());
        WriteRest(point);
        json_.EndObject();
    }

    void WriteOrientationPoint(const OrientationPoint& point) {
        json_.StartObject();
        Text("name", point.GetNome());
        Line(point.Line());
        if (!point.GetExtras().coordinatesSet) // always there for an orientation point
            WriteCoordinates({});
        WriteRest(point);
        if (!point.GetExtras().note.empty())
            Text("note", point.GetExtras().note);
        if (point.Reliability())
            Integer("reliability", *point.Reliability());
        if (!point.Comment().empty())
            Text("comment", point.Comment());
        json_.EndObject();
    }

    /// What every entity may have, where it was set.
    template <class EntityRecord>
    void WriteRest(const EntityRecord& entity) {
        const Extras& extras = entity.GetExtras();
        if (!extras.drawingAttribute.empty())
            Text("drawing_attribute", extras.drawingAttribute);
        if (extras.coordinatesSet)
            WriteCoordinates(extras.coordinates);
        if (entity.GetMarks().any())
            WriteMarks(entity.GetMarks());
        if (!extras.photos.empty())
            Array("photos", extras.photos, &JsonObject::WritePhoto);
        if (!extras.terrainNote.empty())
            Text("terrain_note", extras.terrainNote);
    }

    void WriteCoordinates(const Coordinates& place) {
        json_.Key("coordinates");
        json_.StartArray();
        json_.Number(place.x);
        json_.Number(place.y);
        json_.Number(place.z);
        json_.EndArray();
    }

    void WriteMarks(const Marks& marks) {
        json_.Key("flags");
        json_.StartArray();
        for (std::size_t i = 0; i < kMarkCount; ++i) {
            if (marks.test(i)) {
                json_.Utf8(kMarkNames[i]);
            }
        }
        json_.EndArray();
    }

    void WritePhoto(const Photo& photo) {
        json_.StartObject();
        Text("path", photo.path);
        Integer("kind", photo.kind);
        json_.EndObject();
    }

    void WriteCadastral(const CadastralDocument& document) {
        json_.Key("cadastral");
        json_.StartObject();
        Text("day", document.day);
        Text("month", document.month);
        Text("year", document.year);
        Text("protocol", document.protocol);
        Text("municipality_code", document.municipalityCode);
        Text("sheet", document.sheet);
        Text("parcel", document.parcel);
        Text("surveyor_surname", document.surveyorSurname);
        Text("surveyor_first_name", document.surveyorFirstName);
        Text("qualification", document.qualification);
        Text("province", document.province);
        json_.Key("values");
        json_.StartObject();
        WriteLineBody(document.values);
        json_.EndObject();
        json_.Key("lines");
        json_.StartArray();
        for (std::size_t i = 0; i < document.lines.size(); ++i)
            WriteLine(document.lines[i],
                      i < document.lineNumbers.size() ? document.lineNumbers[i] : 0);
        json_.EndArray();
        json_.EndObject();
    }

    void WriteLine(const CRig& line, std::uint64_t number) {
        json_.StartObject();
        const char type = line.GetTipoRiga();
        Text("type", {&type, 1});
        Line(number);
        WriteLineBody(line);
        json_.EndObject();
    }

    void WriteLineBody(const CRig& line) {
        Text("name_label_1", line.GetLblNome1());
        Text("name_label_2", line.GetLblNome2());
        Text("material_label", line.GetLblMater());
        Number("real_1", line.GetDatoRea1());
        Number("real_2", line.GetDatoRea2());
        Integer("integer_1", line.GetDatoInt1());
        Integer("integer_2", line.GetDatoInt2());
        json_.Key("vertices");
        json_.StartArray();
        for (int i = 0; i < line.GetVrtArSize(); ++i)
            WriteVertex(*line.GetVrtAt(i));
        json_.EndArray();
    }

    void WriteVertex(const CCtsVrt& vertex) {
        json_.StartObject();
        Text("name", vertex.name);
        Text("line_type", {&vertex.lineType, 1});
        Text("colour", {&vertex.colour, 1});
        json_.EndObject();
    }

    Writer& json_;
    JsonParts parts_;
};

} // namespace

void JsonOutput::Separate() {
    if (array_)
        Out().Write(first_ ? "[\n" : ",\n");
    first_ = false;
}

void JsonOutput::Write(const Conversion& conversion) {
    JsonWriter<true> writer(Out());
    JsonObject(writer, parts_).Write(conversion);
}

void JsonOutput::End() {
    if (array_)
        Out().Write(first_ ? "[]" : "\n]");
    Out().Write("\n");
}

void JsonLinesOutput::Write(const Conversion& conversion) {
    JsonWriter<false> writer(Out());
    JsonObject(writer, JsonParts::All).Write(conversion);
    Out().Write("\n");
    Out().Flush();
}

} // namespace convfile::views
