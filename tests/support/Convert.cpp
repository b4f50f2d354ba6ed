#include "tests/support/Convert.h"

#include "app/FileConversion.h"
#include "tests/support/Files.h"
#include "views/JsonOutput.h"

#include <sstream>

namespace convfile::test {

namespace {

views::Route RouteTo(const std::string& format, Rules rules) {
    return {.format = format, .complete = rules == Rules::Complete, .trustsFormat = true};
}

} // namespace

void ConvertAs(const std::string& format, const std::string& path, views::Conversion& result,
               Rules rules) {
    app::Convert(RouteTo(format, rules), path, result);
}

void ConvertBytesAs(const std::string& format, const std::string& name, std::string_view bytes,
                    views::Conversion& result, Rules rules) {
    if (FormatByName(format)->kind != FormatKind::Database) {
        app::Convert(RouteTo(format, rules), name, result, ByteSource::Memory(bytes));
        return;
    }
    const TempFolder folder;
    ConvertAs(format, folder.Write(name, bytes), result, rules);
}

std::string JsonOf(const views::Conversion& conversion) {
    std::ostringstream text;
    views::Sink sink(text);
    views::JsonOutput output(sink, 1, views::JsonParts::FieldBook);
    output.Add(conversion);
    output.End();
    sink.Flush();
    return text.str();
}

std::string ConvertToJson(const std::string& format, const std::string& path, Rules rules) {
    views::Conversion conversion;
    ConvertAs(format, path, conversion, rules);
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

void ForEachRecordLine(const views::Conversion& conversion,
                       const std::function<void(const char* kind, std::uint64_t line)>& see) {
    for (const auto& job : conversion.fieldBook.Jobs()) {
        see("jobs", job->Line());
        for (const auto& station : job->stations) {
            see("stations", station->Line());
            for (const auto& point : station->points)
                see("points", point->Line());
        }
    }
    for (const auto& point : conversion.fieldBook.OrientationPoints())
        see("orientation_points", point->Line());
    for (const std::uint64_t line : conversion.document.lineNumbers)
        see("document", line);
}

} // namespace convfile::test
