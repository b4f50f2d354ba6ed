#include "app/Output.h"

#include "app/JsonOutput.h"
#include "app/TableOutput.h"

namespace convfile::app {

std::unique_ptr<Output> MakeOutput(std::string_view name, Sink& sink, std::size_t files) {
    if (name == kSummary)
        return std::make_unique<SummaryOutput>(sink);
    if (name == kTable)
        return std::make_unique<TableOutput>(sink);
    if (name == kJson)
        return std::make_unique<JsonOutput>(sink, files);
    if (name == kJsonLines)
        return std::make_unique<JsonLinesOutput>(sink);
    return nullptr;
}

} // namespace convfile::app
