#include "app/FileConversion.h"

#include "app/Platform.h"
#include "routines/CodePage.h"

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

} // namespace

void Convert(const views::Route& route, const std::string& path, views::Conversion& result,
             const ByteSource& source) {
    result.path = path;
    KeepDatabaseDriver();
    const NamedFile file(path, source);
    views::Convert(route, file.Name(), file.Source(), result);
    if (result.converted || result.shortOfMemory || source.bytes || source.stream)
        return;
    std::string problem = OpeningProblem(path);
    if (!problem.empty())
        result.problem = std::move(problem);
}

bool FitsNoFormat(const std::string& path, bool complete) {
    const NamedFile file(path, {});
    views::Conversion conversion;
    // No more is wanted than to know the format.
    views::Convert({.complete = complete}, file.Name(), file.Source(), conversion,
                   [](std::uint64_t) { return false; });
    return conversion.fitsNone;
}

} // namespace convfile::app
