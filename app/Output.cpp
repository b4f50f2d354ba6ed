#include "app/Output.h"

#include "app/JsonOutput.h"
#include "app/TableOutput.h"
#include "export/FromBook.h"
#include "export/Output.h"

#include <utility>

namespace convfile::app {

namespace {

/// What export/ makes of a field book.
class ExportOutput final : public Output {
public:
    explicit ExportOutput(std::unique_ptr<exports::Output> output) : output_(std::move(output)) {}

    void Add(const Conversion& conversion) override {
        if (conversion.converted)
            output_->Add(exports::WorkFrom(conversion.fieldBook, BareName(conversion.path)));
    }

private:
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
        return std::make_unique<ExportOutput>(kind->make(sink));
    return nullptr;
}

} // namespace convfile::app
