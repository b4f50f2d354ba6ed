#include "web/Session.h"

#include "entry/FormatTable.h"
#include "views/JsonWriter.h"
#include "views/Output.h"

#include <algorithm>
#include <new>
#include <sstream>
#include <utility>

namespace convfile::web {

namespace {

using Json = views::JsonWriter<false>;

/// What `write` writes.
template <class Write>
std::string JsonText(Write write) {
    std::ostringstream text;
    {
        OutputBuffer buffer(text);
        Json json(buffer);
        write(json);
    }
    return std::move(text).str();
}

void WriteText(Json& json, std::string_view name, std::string_view utf8) {
    json.Key(name);
    json.Utf8(utf8);
}

void WriteCount(Json& json, std::string_view name, std::uint64_t count) {
    json.Key(name);
    json.Integer(count);
}

void WriteRemark(Json& json, const Remark& remark) {
    json.StartObject();
    WriteText(json, "kind", NameOf(remark.kind));
    json.Key("text");
    json.Text(remark.text);
    WriteCount(json, "count", remark.count);
    WriteCount(json, "last", remark.lastLine);
    json.Key("lines");
    json.StartArray();
    for (const std::uint64_t line : remark.lines)
        json.Integer(line);
    json.EndArray();
    json.EndObject();
}

/// The first line of the program's summary, without the file's name.
std::string Summary(const views::Conversion& conversion) {
    std::string text;
    views::Render(views::kSummary, conversion, [&](std::string_view piece) { text += piece; });
    text = text.substr(0, text.find('\n'));
    const std::string name = views::BareName(conversion.path) + ": ";
    return text.starts_with(name) ? text.substr(name.size()) : text;
}

void WriteMark(Json& json, const Marks::Mark* mark) {
    json.StartObject();
    if (mark) {
        json.Key("x");
        json.Number(mark->x);
        json.Key("y");
        json.Number(mark->y);
        WriteCount(json, "row", mark->row);
        json.Key("name");
        json.Text(mark->name);
    }
    json.EndObject();
}

/// The records of these files are no lines.
constexpr std::string_view kWithoutLines = "mts";

/// The lines of these files end in a lone CR, too, whatever is asked for.
constexpr std::string_view kCompleteAlways = "sdr33";

} // namespace

std::unique_ptr<Session> Session::Open(std::size_t size) {
    std::unique_ptr<char[]> bytes(new (std::nothrow) char[std::max<std::size_t>(size, 1)]);
    if (!bytes)
        return nullptr;
    return std::unique_ptr<Session>(new Session(std::move(bytes), size));
}

void Session::Convert(const std::string& name, const std::string& format, bool complete,
                      const views::Progress& progress) {
    marks_.reset();
    lines_.reset();
    rows_.reset();
    conversion_ = std::make_unique<views::Conversion>();
    conversion_->path = name;
    const std::string_view bytes(bytes_.get(), size_);
    views::Convert({.format = format, .complete = complete}, name, ByteSource::Memory(bytes),
                   *conversion_, progress);
    rows_.emplace(*conversion_);
    const bool hasLines = conversion_->account.format != kWithoutLines;
    lines_.emplace(hasLines ? bytes : std::string_view(),
                   complete || conversion_->account.format == kCompleteAlways);
}

std::string Session::Overview() const {
    return JsonText([this](Json& json) {
        const views::Conversion& done = *conversion_;
        json.StartObject();
        json.Key("converted");
        json.Bool(done.converted);
        WriteText(json, "format", done.account.format);
        json.Key("byContent");
        json.Bool(done.foundByContent);
        WriteText(json, "problem", done.problem);
        WriteText(json, "summary", Summary(done));
        WriteCount(json, "accountLines", done.account.lines);
        WriteCount(json, "read", done.account.read);
        WriteCount(json, "skipped", done.account.skipped);
        json.Key("remarks");
        json.StartArray();
        for (const Remark& remark : done.account.remarks)
            WriteRemark(json, remark);
        json.EndArray();
        json.Key("heads");
        rows_->WriteHeads(json);
        WriteCount(json, "rows", rows_->Size());
        WriteCount(json, "lines", lines_->Size());
        json.EndObject();
    });
}

std::string Session::Rows(std::size_t first, std::size_t count) const {
    return JsonText([&](Json& json) {
        json.StartArray();
        for (std::size_t row = first; row < std::min(first + count, rows_->Size()); ++row)
            rows_->WriteRow(json, row);
        json.EndArray();
    });
}

std::string Session::Lines(std::size_t first, std::size_t count) const {
    return JsonText([&](Json& json) {
        json.StartArray();
        for (std::size_t line = first; line < std::min(first + count, lines_->Size()); ++line)
            lines_->WriteLine(json, line);
        json.EndArray();
    });
}

long Session::RowOfLine(std::size_t line) const {
    const std::size_t row = rows_->RowOfLine(line);
    return row == rows_->Size() ? -1 : static_cast<long>(row);
}

const Marks& Session::NeedMarks() {
    if (!marks_)
        marks_.emplace(*conversion_, *rows_);
    return *marks_;
}

std::string Session::DrawingSize() {
    return JsonText([marks = &NeedMarks()](Json& json) {
        json.StartObject();
        json.Key("width");
        json.Number(marks->Width());
        json.Key("height");
        json.Number(marks->Height());
        WriteCount(json, "marks", marks->Size());
        json.EndObject();
    });
}

std::string Session::MarkAt(double x, double y, double farthest) {
    return JsonText([&](Json& json) { WriteMark(json, NeedMarks().At(x, y, farthest)); });
}

std::string Session::MarkOfRow(std::size_t row) {
    return JsonText([&](Json& json) { WriteMark(json, NeedMarks().OfRow(row)); });
}

void Session::Render(std::string_view view, std::ostream& out) const {
    views::Sink sink(out);
    const auto output = views::MakeOutput(view, sink, 1);
    if (!output)
        return;
    output->Add(*conversion_);
    output->End();
}

std::string FormatNames() {
    return JsonText([](Json& json) {
        json.StartArray();
        for (const Format& format : Formats()) {
            json.StartObject();
            WriteText(json, "name", format.name);
            WriteText(json, "title", format.title);
            WriteText(json, "extensions", format.extensions);
            json.EndObject();
        }
        json.EndArray();
    });
}

} // namespace convfile::web
