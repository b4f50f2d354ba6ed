#include "app/Conversion.h"

#include "app/Display.h"
#include "app/Platform.h"
#include "memory/LineNumbers.h"
#include "memory/PointLibrary.h"
#include "routines/CodePage.h"
#include "routines/FileName.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace convfile::app {

namespace {

/// Why a file cannot be opened; empty where it can.
std::string OpeningProblem(const std::string& path) {
    std::error_code ignored;
    if (path.empty())
        return "has no name";
    if (std::filesystem::is_directory(PathOf(path), ignored))
        return "is a folder";
    if (std::FILE* const file = std::fopen(path.c_str(), "rb")) {
        std::fclose(file);
        return {};
    }
    return std::string("cannot be opened: ") + std::strerror(errno);
}

/// Why a file was not converted; `reason` is what its conversion says itself.
std::string ProblemOf(const Route& route, const std::string& path, const ConversionReport& report,
                      bool isFile) {
    if (report.shortOfMemory)
        return report.problem;
    std::string problem = isFile ? OpeningProblem(path) : std::string();
    if (!problem.empty())
        return problem;
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

} // namespace

void Convert(const Route& route, const std::string& path, Conversion& result,
             const ByteSource& source) {
    result.path = path;
    ConversionReport report;
    if (route.problem.empty()) {
        KeepDatabaseDriver();
        memory::PointLibrary pointLibrary(result.notifications);
        memory::DrawingEngine drawing(result.notifications);
        memory::LineNumbers lineNumbers(result.document);
        result.converted =
            ConvertFile({.file = path,
                         .source = source,
                         .format = route.format,
                         .fieldBook = &result.fieldBook,
                         .cadastralDocument = &result.document,
                         .pointLibrary = &pointLibrary,
                         .drawing = &drawing,
                         .listener = &lineNumbers,
                         .rules = route.complete ? ReadingRules::Complete() : ReadingRules{},
                         .trustsFormat = route.trustsFormat},
                        report);
    }
    result.cadastral = result.converted && IsOfKind(report.format, FormatKind::Cadastral);
    result.messages = memory::TakeMessages();
    if (report.shortOfMemory)
        result.fieldBook.Clear(); // what it holds is what the rest of the work lacks
    const bool isFile = !source.bytes && !source.stream;
    if (!result.converted)
        result.problem = ProblemOf(route, path, report, isFile);
    result.foundByContent = report.foundByContent;
    result.account = std::move(report.account);
}

std::string BareName(const std::string& path) {
    std::string name = path;
    EstraiIlNomeFile(name);
    return Utf8OfName(name);
}

} // namespace convfile::app
