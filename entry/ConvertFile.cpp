#include "entry/ConvertFile.h"

#include "entry/Detection.h"
#include "entry/Fit.h"
#include "entry/FormatTable.h"
#include "routines/FileName.h"
#include "routines/Text.h"

#include <cerrno>
#include <vector>

namespace {

using namespace convfile;

/// What is known of a file before it is read.
struct Choice {
    Candidate candidate = {};
    const Format* better = nullptr; ///< fits far better than the one that was named
    bool byContent = false;
    std::string problem = {}; ///< why there is none
};

std::string UpperExtension(std::string name) {
    EstraiEstensFile(name);
    StringToUpper(name);
    return name;
}

std::vector<const Format*> AllFormats() {
    std::vector<const Format*> formats;
    for (const Format& format : Formats())
        formats.push_back(&format);
    return formats;
}

std::string NothingFits(Sample& sample, const ConversionOrder& order) {
    std::string problem = "no format fits";
    if (order.rules.lines == LineRules::Complete)
        return problem;
    const Candidate complete =
        FindFormat(AllFormats(), sample, order.file, ReadingRules::Complete());
    if (complete.format)
        problem +=
            "; try --complete, which reads its lines as " + std::string(complete.format->name);
    return problem;
}

/// A format that was named is looked at closer only where it makes little of the file.
Choice CheckNamed(const Format& named, bool byOption, Sample& sample,
                  const ConversionOrder& order) {
    Choice choice;
    choice.candidate.format = &named;
    if (order.trustsFormat)
        return choice;
    const double score = FirstScore(named, sample, order.file, order.rules);
    if (score >= kFits)
        return choice;
    const Candidate best = FindFormat(AllFormats(), sample, order.file, order.rules);
    if (best.format && best.format != &named && best.score >= score + kFarBetter)
        choice.better = best.format;
    if (!best.format && !byOption && score < kFitsItsExtension)
        choice = {.problem = NothingFits(sample, order)};
    return choice;
}

Choice Choose(Sample& sample, const ConversionOrder& order) {
    if (!order.format.empty()) {
        const Format* const named = FormatByName(order.format);
        if (!named)
            return {.problem = "there is no format named \"" + order.format + "\""};
        return CheckNamed(*named, true, sample, order);
    }
    std::vector<const Format*> formats = FormatsByExtension(UpperExtension(order.file));
    if (formats.size() == 1)
        return CheckNamed(*formats[0], false, sample, order);
    if (formats.empty())
        formats = AllFormats();
    Choice choice;
    choice.byContent = true;
    choice.candidate = FindFormat(formats, sample, order.file, order.rules);
    if (!choice.candidate.format)
        choice.problem = NothingFits(sample, order);
    return choice;
}

void NoteOtherFormat(const Format& better, const Format& format, FileAccount& account) {
    account.remarks.push_back({.kind = RemarkKind::OtherFormat,
                               .text = "the content fits " + std::string(better.name) +
                                       " far better: read as " + std::string(format.name) +
                                       " all the same",
                               .count = 1});
}

/// Nothing is said of a file that does not open, but for want of memory: who named it can find out.
void NoteOpening(ConversionReport& report) {
    if (errno != ENOMEM)
        return;
    report.shortOfMemory = true;
    report.problem = "not enough memory";
}

void Convert(const ConversionOrder& order, ConversionReport& report) {
    if (!order.fieldBook || order.file.empty()) {
        report.problem = "the order lacks file or field book";
        return;
    }
    Sample sample;
    errno = 0;
    if (!order.trustsFormat && !sample.Open(order.file, order.source)) {
        NoteOpening(report);
        return;
    }
    const Choice choice = Choose(sample, order);
    const Format* const format = choice.candidate.format;
    report.problem = choice.problem;
    if (!format)
        return;
    report.format = format->name;
    report.foundByContent = choice.byContent;
    if (format->kind == FormatKind::Database && (order.source.bytes || order.source.stream)) {
        report.problem = "a job database is read from its file alone";
        return;
    }
    Problem problem;
    std::string file = order.file;
    errno = 0;
    report.converted = format->convert(
        {.fieldBook = *order.fieldBook,
         .cadastralDocument = order.cadastralDocument,
         .pointLibrary = order.pointLibrary,
         .drawing = order.drawing,
         .preparation = {.source = order.trustsFormat ? order.source : sample.Source(),
                         .problem = &problem,
                         .account = &report.account,
                         .listener = order.listener,
                         .rules = order.rules,
                         .layout = choice.candidate.layout}},
        &file);
    report.shortOfMemory = problem.shortOfMemory;
    report.problem = problem.text;
    if (!report.converted)
        NoteOpening(report);
    if (report.converted)
        report.account.format = format->name;
    if (choice.better)
        NoteOtherFormat(*choice.better, *format, report.account);
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
