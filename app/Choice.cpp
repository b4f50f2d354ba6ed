#include "app/Choice.h"

#include "routines/FileName.h"
#include "routines/Text.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace convfile::app {

namespace {

std::string UpperExtension(const std::string& path) {
    std::string extension = path;
    EstraiEstensFile(extension);
    StringToUpper(extension);
    return extension;
}

Route DownloadRoute(const std::string& path) {
    Route route;
    route.download = true;
    route.format = FormatByDownloadExtension(UpperExtension(path));
    return route;
}

Route CodeRoute(int code) {
    Route route;
    route.code = code;
    route.format = FormatByCode(code);
    return route;
}

Route NoRoute(std::string problem) {
    Route route;
    route.problem = std::move(problem);
    return route;
}

/// A format that has no code is reached by the file's extension alone.
Route NamedRoute(const std::string& name, const std::string& path) {
    const Format* const format = FormatByName(name);
    if (!format)
        return NoRoute("there is no format named \"" + name + "\"");
    if (format->code != 0)
        return CodeRoute(format->code);
    Route route = DownloadRoute(path);
    if (route.format != format) {
        return NoRoute("format " + name + " is chosen by the extension (" +
                       std::string(format->downloadExtensions) + "), which this file has not");
    }
    return route;
}

Route ExtensionRoute(const std::string& path) {
    const std::string extension = UpperExtension(path);
    if (FormatByDownloadExtension(extension))
        return DownloadRoute(path);
    if (const Format* const format = FormatByExtension(extension))
        return CodeRoute(format->code);
    Route route = NoRoute("its extension tells no format; choose one with --format or --code");
    route.unknownExtension = true;
    return route;
}

} // namespace

Route ChooseRoute(const FormatChoice& choice, const std::string& path) {
    Route route = choice.code       ? CodeRoute(*choice.code)
                  : choice.name     ? NamedRoute(*choice.name, path)
                  : choice.download ? DownloadRoute(path)
                                    : ExtensionRoute(path);
    route.complete = choice.complete;
    return route;
}

std::string FormatList() {
    using Row = std::array<std::string, 5>;
    std::vector<Row> rows = {{"NAME", "CODE", "EXTENSION", "DOWNLOAD", "READS"}};
    for (const Format& format : Formats()) {
        rows.push_back(
            {std::string(format.name), format.code == 0 ? "-" : std::to_string(format.code),
             format.extensions.empty() ? "-" : std::string(format.extensions),
             format.downloadExtensions.empty() ? "-" : std::string(format.downloadExtensions),
             std::string(format.title)});
    }
    std::array<std::size_t, 5> widths{};
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    }
    std::string list;
    for (const Row& row : rows) {
        for (std::size_t i = 0; i + 1 < row.size(); ++i)
            list += row[i] + std::string(widths[i] - row[i].size() + 2, ' ');
        list += row.back() + "\n";
    }
    return list;
}

} // namespace convfile::app
