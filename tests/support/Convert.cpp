#include "tests/support/Convert.h"

#include "app/JsonOutput.h"
#include "tests/support/Files.h"

#include <sstream>

namespace convfile::test {

void ConvertAs(const std::string& format, const std::string& path, app::Conversion& result) {
    app::Convert({.format = format, .trustsFormat = true}, path, result);
}

void ConvertBytesAs(const std::string& format, const std::string& name, std::string_view bytes,
                    app::Conversion& result) {
    if (FormatByName(format)->kind != FormatKind::Database) {
        app::Convert({.format = format, .trustsFormat = true}, name, result,
                     ByteSource::Memory(bytes));
        return;
    }
    const TempFolder folder;
    ConvertAs(format, folder.Write(name, bytes), result);
}

std::string JsonOf(const app::Conversion& conversion) {
    std::ostringstream text;
    app::Sink sink(text);
    app::JsonOutput output(sink, 1, app::JsonParts::FieldBook);
    output.Add(conversion);
    output.End();
    sink.Flush();
    return text.str();
}

std::string ConvertToJson(const std::string& format, const std::string& path) {
    app::Conversion conversion;
    ConvertAs(format, path, conversion);
    return JsonOf(conversion);
}

std::vector<std::string> PointNames(const memory::FieldBook& book) {
    std::vector<std::string> names;
    for (const auto& job : book.Jobs()) {
        for (const auto& station : job->stations) {
            for (const auto& point : station->points)
                names.push_back(point->GetNome() + "|" + point->Code());
        }
    }
    return names;
}

} // namespace convfile::test
