#include "entry/ConvertFile.h"

#include "entry/FormatTable.h"

namespace {

void Convert(const ConversionOrder& order, ConversionReport& report) {
    const Format* const format = FormatByName(order.format);
    if (!format || !order.fieldBook || order.file.empty()) {
        report.problem = !format ? "there is no such format" : "the order lacks file or field book";
        return;
    }
    Problem problem;
    std::string file = order.file;
    report.converted = format->convert({.fieldBook = *order.fieldBook,
                                        .cadastralDocument = order.cadastralDocument,
                                        .pointLibrary = order.pointLibrary,
                                        .drawing = order.drawing,
                                        .preparation = {.source = order.source,
                                                        .problem = &problem,
                                                        .account = &report.account,
                                                        .listener = order.listener,
                                                        .rules = order.rules}},
                                       &file);
    report.shortOfMemory = problem.shortOfMemory;
    report.problem = problem.text;
    if (report.converted)
        report.account.format = format->name;
}

} // namespace

bool ConvertFile(const ConversionOrder& order, ConversionReport& report) {
    report = {};
    Problem problem;
    if (!Guarded(&problem, [&] { Convert(order, report); })) {
        report.converted = false;
        report.shortOfMemory = problem.shortOfMemory;
        Guarded(nullptr, [&] { report.problem = problem.text; });
    }
    return report.converted;
}
