#include "app/Conversion.h"

#include "app/Display.h"
#include "app/Platform.h"
#include "host/ConvListener.h"
#include "memory/LineNumbers.h"
#include "memory/PointLibrary.h"
#include "routines/CodePage.h"
#include "routines/FileName.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
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
    if (std::FILE* const file = OpenToRead(path)) {
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

/// The file as the library finds it: one whose name is beyond the system's code page is opened
/// here.
class NamedFile {
public:
    NamedFile(const std::string& path, const ByteSource& source) : source_(source) {
        if (std::optional<std::string> name = SystemName(path)) {
            name_ = std::move(*name);
            return;
        }
        name_ = Windows1252FromUtf8(path);
        if (source.bytes || source.stream)
            return;
        file_.reset(OpenToRead(path));
        source_.stream = file_.get();
    }
    const std::string& Name() const { return name_; }
    const ByteSource& Source() const { return source_; }

private:
    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::string name_;
    ByteSource source_;
    std::unique_ptr<std::FILE, CloseFile> file_;
};

/// Where it was not converted and no format was taken, what was tried is all there is.
bool FitsNone(const ConversionReport& report) {
    return !report.converted && report.format.empty() && !report.shortOfMemory &&
           !report.problem.empty();
}

/// Wants no more than to know the format.
class NoMore final : public CConvListener {
    bool Progress(std::uint64_t) override { return false; }
};

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
        const NamedFile file(path, source);
        result.converted =
            ConvertFile({.file = file.Name(),
                         .source = file.Source(),
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
    result.fitsNone = FitsNone(report);
    result.foundByContent = report.foundByContent;
    result.account = std::move(report.account);
}

bool FitsNoFormat(const std::string& path, bool complete) {
    const NamedFile file(path, {});
    memory::FieldBook fieldBook;
    NoMore listener;
    ConversionReport report;
    ConvertFile({.file = file.Name(),
                 .source = file.Source(),
                 .format = {},
                 .fieldBook = &fieldBook,
                 .listener = &listener,
                 .rules = complete ? ReadingRules::Complete() : ReadingRules{}},
                report);
    memory::TakeMessages();
    return FitsNone(report);
}

std::string BareName(const std::string& path) {
    std::string name = path;
    EstraiIlNomeFile(name);
    return Utf8OfName(name);
}

} // namespace convfile::app
