#include "views/CadastralTable.h"

#include "views/Display.h"

#include <string>
#include <string_view>

namespace convfile::views {

namespace {

constexpr std::size_t kLabelWidth = 20;
constexpr std::size_t kLineWidth = 100;

void PrintEntry(Sink& sink, std::string_view label, const std::string& shown) {
    std::string line = "  " + std::string(label);
    line.resize(2 + kLabelWidth, ' ');
    sink.Write(line + (shown.empty() ? "-" : shown) + "\n");
}

std::string Joined(std::string text, std::string_view separator, const std::string& more) {
    if (!text.empty() && !more.empty())
        text += separator;
    return text + more;
}

/// What a line record holds besides its vertices, as far as it holds anything.
std::string LabelsAndValues(const CRig& line) {
    std::string shown;
    const auto label = [&](const char* name, const std::string& text) {
        if (!text.empty())
            shown += std::string("  ") + name + " " + Shown(text);
    };
    const auto number = [&](const char* name, double value) {
        if (value != 0)
            shown += std::string("  ") + name + " " + ShownNumber(value);
    };
    label("name 1", line.GetLblNome1());
    label("name 2", line.GetLblNome2());
    label("material", line.GetLblMater());
    number("real 1", line.GetDatoRea1());
    number("real 2", line.GetDatoRea2());
    number("integer 1", line.GetDatoInt1());
    number("integer 2", line.GetDatoInt2());
    return shown;
}

/// The vertices, as many as fit in a line of text: name and style (line type and colour).
void PrintVertices(Sink& sink, const CRig& line) {
    constexpr std::string_view kBetween = "  ";
    std::string text;
    std::size_t width = 0; // of the text
    for (int i = 0; i < line.GetVrtArSize(); ++i) {
        const CCtsVrt& vertex = *line.GetVrtAt(i);
        const std::string shown = Shown(vertex.name) + " (" + Shown({&vertex.lineType, 1}) +
                                  Shown({&vertex.colour, 1}) + ")";
        const std::size_t shownWidth = ShownWidth(shown);
        if (!text.empty() && width + shownWidth > kLineWidth) {
            sink.Write("    " + text + "\n");
            text.clear();
        }
        width = text.empty() ? shownWidth : width + kBetween.size() + shownWidth;
        text = Joined(std::move(text), kBetween, shown);
    }
    if (!text.empty())
        sink.Write("    " + text + "\n");
}

} // namespace

void PrintCadastralHeader(Sink& sink, const memory::CadastralDocument& document) {
    sink.Write("\nCadastral survey\n");
    std::string date = Joined(Shown(document.day), "/", Shown(document.month));
    date = Joined(std::move(date), "/", Shown(document.year));
    PrintEntry(sink, "Date", date);
    PrintEntry(sink, "Protocol", Shown(document.protocol));
    PrintEntry(sink, "Municipality", Shown(document.municipalityCode));
    PrintEntry(sink, "Sheet", Shown(document.sheet));
    PrintEntry(sink, "Parcel", Shown(document.parcel));
    PrintEntry(sink, "Surveyor",
               Joined(Shown(document.surveyorSurname), " ", Shown(document.surveyorFirstName)));
    PrintEntry(sink, "Qualification", Shown(document.qualification));
    PrintEntry(sink, "Province", Shown(document.province));
    const std::string values = LabelsAndValues(document.values);
    PrintEntry(sink, "Values", values.empty() ? values : values.substr(2));
}

void PrintCadastralLines(Sink& sink, const memory::CadastralDocument& document) {
    if (document.lines.empty())
        return;
    sink.Write("\nLines (vertices with line type and colour)\n");
    for (const CRig& line : document.lines) {
        const char type = line.GetTipoRiga();
        sink.Write("  Type " + Shown({&type, 1}) + LabelsAndValues(line) + "\n");
        PrintVertices(sink, line);
    }
}

} // namespace convfile::views
