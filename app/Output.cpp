#include "app/Output.h"

#include "app/JsonOutput.h"
#include "app/TableOutput.h"
#include "export/FromBook.h"
#include "export/Output.h"

#include <sstream>
#include <utility>

namespace convfile::app {

namespace {

/// What export/ makes of a field book.
class ExportOutput final : public Output {
public:
    ExportOutput(Sink& sink, const exports::OutputKind& kind)
        : Output(sink), output_(kind.make(sink)) {}

private:
    void Write(const Conversion& conversion) override {
        if (conversion.converted)
            output_->Add(exports::WorkFrom(conversion.fieldBook, BareName(conversion.path)));
    }

    std::unique_ptr<exports::Output> output_;
};

} // namespace

std::vector<std::string> Views() {
    std::vector<std::string> views = {std::string(kSummary), std::string(kTable),
                                      std::string(kJson), std::string(kJsonLines)};
    for (const exports::OutputKind& kind : exports::OutputKinds())
        views.emplace_back(kind.name);
    return views;
}

bool TakesOneFile(std::string_view view) {
    const exports::OutputKind* const kind = exports::FindOutputKind(view);
    return kind && kind->oneFile;
}

std::unique_ptr<Output> MakeOutput(std::string_view name, Sink& sink, std::size_t files) {
    if (name == kSummary)
        return std::make_unique<SummaryOutput>(sink);
    if (name == kTable)
        return std::make_unique<TableOutput>(sink);
    if (name == kJson)
        return std::make_unique<JsonOutput>(sink, files);
    if (name == kJsonLines)
        return std::make_unique<JsonLinesOutput>(sink);
    if (const exports::OutputKind* const kind = exports::FindOutputKind(name))
        return std::make_unique<ExportOutput>(sink, *kind);
    return nullptr;
}

std::string Rendered(std::string_view view, const Conversion& conversion) {
    std::ostringstream text;
    Sink sink(text);
    const auto output = MakeOutput(view, sink, 1);
    sink.Flush();
    text.str({}); // a table's head
    output->Add(conversion);
    sink.Flush();
    return std::move(text).str();
}

std::string_view ExtensionOf(std::string_view view) {
    if (view == kSummary || view == kTable)
        return "txt";
    return view == "points" ? "csv" : view;
}

} // namespace convfile::app
