#include "app/Choice.h"

#include "routines/FileName.h"
#include "routines/Text.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
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

views::Route RouteTo(const Format* format, std::string problem) {
    views::Route route;
    if (format)
        route.format = format->name;
    else
        route.problem = std::move(problem);
    return route;
}

/// The extensions that several formats have, each with those.
std::string SharedExtensions() {
    std::map<std::string, std::vector<std::string_view>> formatsOf;
    for (const Format& format : Formats()) {
        for (std::string_view list : {format.extensions, format.downloadExtensions}) {
            while (!list.empty())
                formatsOf[std::string(TakeField(list, ' '))].push_back(format.name);
        }
    }
    std::string text;
    for (const auto& [extension, names] : formatsOf) {
        if (names.size() < 2)
            continue;
        text += "Several formats have the extension " + extension + ":";
        for (const std::string_view name : names)
            text += " " + std::string(name);
        text += ". The content chooses.\n";
    }
    return text;
}

} // namespace

views::Route ChooseRoute(const FormatChoice& choice, const std::string& path) {
    views::Route route;
    if (choice.code) {
        route = RouteTo(FormatByCode(*choice.code),
                        "format code " + std::to_string(*choice.code) + " has no converter");
    } else if (choice.name) {
        route.format = *choice.name;
    } else if (choice.download) {
        route = RouteTo(FormatByDownloadExtension(UpperExtension(path)),
                        "its extension is none of a downloaded file that can be read");
    }
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
    return list + SharedExtensions();
}

} // namespace convfile::app
