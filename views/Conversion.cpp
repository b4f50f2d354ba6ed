#include "views/Conversion.h"

#include "entry/FormatTable.h"
#include "memory/LineNumbers.h"
#include "memory/PointLibrary.h"
#include "routines/FileName.h"
#include "views/Display.h"

#include <utility>

namespace convfile::views {

namespace {

/// Why a file was not converted.
std::string ProblemOf(const Route& route, const ConversionReport& report) {
    if (report.shortOfMemory)
        return report.problem;
    if (!route.problem.empty())
        return route.problem;
    if (!report.problem.empty())
        return Shown(report.problem);
    return "cannot be read as " + report.format;
}

bool IsOfKind(const std::string& format, FormatKind kind) {
    const Format* const known = FormatByName(format);
    return known && known->kind == kind;
}

/// Keeps the records' lines, and tells how far the conversion is.
class Listener final : public memory::LineNumbers {
public:
    Listener(memory::CadastralDocument& document, const views::Progress& progress)
        : LineNumbers(document), progress_(progress) {}

    bool Progress(std::uint64_t read) override { return !progress_ || progress_(read); }

private:
    const views::Progress& progress_;
};

} // namespace

void Convert(const Route& route, const std::string& name, const ByteSource& source,
             Conversion& result, const Progress& progress) {
    ConversionReport report;
    if (route.problem.empty()) {
        memory::PointLibrary pointLibrary(result.notifications);
        memory::DrawingEngine drawing(result.notifications);
        Listener listener(result.document, progress);
        result.converted =
            ConvertFile({.file = name,
                         .source = source,
                         .format = route.format,
                         .fieldBook = &result.fieldBook,
                         .cadastralDocument = &result.document,
                         .pointLibrary = &pointLibrary,
                         .drawing = &drawing,
                         .listener = &listener,
                         .rules = route.complete ? ReadingRules::Complete() : ReadingRules{},
                         .trustsFormat = route.trustsFormat},
                        report);
    }
    result.cadastral = result.converted && IsOfKind(report.format, FormatKind::Cadastral);
    result.messages = memory::TakeMessages();
    result.shortOfMemory = report.shortOfMemory;
    if (report.shortOfMemory)
        result.fieldBook.Clear(); // what it holds is what the rest of the work lacks
    if (!result.converted)
        result.problem = ProblemOf(route, report);
    result.fitsNone = !result.converted && report.format.empty() && !report.shortOfMemory &&
                      !report.problem.empty();
    result.foundByContent = report.foundByContent;
    result.account = std::move(report.account);
}

std::string BareName(const std::string& path) {
    std::string name = path;
    EstraiIlNomeFile(name);
    return Utf8OfName(name);
}

} // namespace convfile::views
