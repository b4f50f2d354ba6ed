#include "app/Conversion.h"

#include "app/Display.h"
#include "app/Platform.h"
#include "memory/PointLibrary.h"
#include "routines/CodePage.h"
#include "routines/FileName.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

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

/// Why a file was not converted; `reason` is what its converter says itself.
std::string ProblemOf(const Route& route, const std::string& path, const std::string& reason) {
    std::string problem = OpeningProblem(path);
    if (!problem.empty())
        return problem;
    if (!route.problem.empty())
        return route.problem;
    if (!route.format && route.download)
        return "its extension is none of a downloaded file that can be read";
    if (!route.format)
        return "format code " + std::to_string(route.code) + " has no converter";
    if (!reason.empty())
        return Shown(reason);
    return "cannot be read as " + std::string(route.format->name);
}

/// Gives what the converter says itself of a failure.
std::string RunFormat(const Format& format, std::string path, const ByteSource& source,
                      Conversion& result) {
    if (format.kind == FormatKind::Database)
        KeepDatabaseDriver();
    memory::PointLibrary pointLibrary(result.notifications);
    memory::DrawingEngine drawing(result.notifications);
    Problem problem;
    errno = 0;
    result.converted = format.convert({.fieldBook = result.fieldBook,
                                       .cadastralDocument = &result.document,
                                       .pointLibrary = &pointLibrary,
                                       .drawing = &drawing,
                                       .preparation = {.source = source, .problem = &problem}},
                                      &path);
    const int openingError = errno;
    result.cadastral = result.converted && format.kind == FormatKind::Cadastral;
    result.messages = memory::TakeMessages();
    if (problem.shortOfMemory)
        result.fieldBook.Clear(); // what it holds is what the rest of the work lacks
    else if (!result.converted && openingError == ENOMEM)
        return "not enough memory";
    return problem.text;
}

} // namespace

void Convert(const Route& route, const std::string& path, Conversion& result) {
    result.path = path;
    std::string reason;
    if (route.format && !path.empty())
        reason = RunFormat(*route.format, path, {}, result);
    if (!result.converted)
        result.problem = ProblemOf(route, path, reason);
}

void ConvertFrom(const ByteSource& source, const Format& format, const std::string& name,
                 Conversion& result) {
    result.path = name;
    result.problem = RunFormat(format, name, source, result);
}

std::string BareName(const std::string& path) {
    std::string name = path;
    EstraiIlNomeFile(name);
    return Utf8OfName(name);
}

} // namespace convfile::app
