#include "entry/Detection.h"

#include "database/FirstPage.h"
#include "entry/CountingBook.h"
#include "entry/Fit.h"

#include <algorithm>

namespace convfile {

namespace {

constexpr std::size_t kFirstLook = 4096;
constexpr std::size_t kSecondLook = 1024UL * 1024;

/// Who is so far behind the best, or fits so little, after the first look is out of the running: a
/// header may fill the first kilobytes, but no more than that.
constexpr double kBehind = 0.25;
constexpr double kOut = kFits / 2;

/// `needsRecords`: lines that the format only knows do not make a file of it, such as a text that
/// stands where others have a header.
double Try(const Candidate& candidate, std::string_view bytes, const std::string& name,
           const ReadingRules& rules, bool needsRecords) {
    if (candidate.format->kind == FormatKind::Database)
        return database::BeginsAccessFile(bytes) ? 1 : 0;
    counting::Book book;
    counting::Document document;
    FileAccount account;
    Problem problem;
    std::string file = name;
    const bool converted =
        candidate.format->convert({.fieldBook = book,
                                   .cadastralDocument = &document,
                                   .preparation = {.source = ByteSource::Memory(bytes),
                                                   .problem = &problem,
                                                   .account = &account,
                                                   .rules = rules,
                                                   .isTrial = true,
                                                   .layout = candidate.layout}},
                                  &file);
    if (!converted)
        return 0;
    const counting::Counts& counts = book.Finish();
    const bool holdsAnything = counts.records > 0 || counts.namedJobs > 0 || account.numbers > 0;
    return holdsAnything || !needsRecords ? ScoreOf(account, counts) : 0;
}

void TryAll(std::vector<Candidate>& candidates, std::string_view bytes, const std::string& name,
            const ReadingRules& rules, bool needsRecords) {
    for (Candidate& candidate : candidates)
        candidate.score = Try(candidate, bytes, name, rules, needsRecords);
}

const Candidate& BestOf(const std::vector<Candidate>& candidates) {
    return *std::ranges::max_element(candidates, {}, &Candidate::score);
}

} // namespace

double FirstScore(const Format& format, Sample& sample, const std::string& name,
                  const ReadingRules& rules) {
    return Try({.format = &format}, sample.First(kFirstLook), name, rules, false);
}

Candidate FindFormat(const std::vector<const Format*>& formats, Sample& sample,
                     const std::string& name, const ReadingRules& rules) {
    std::vector<Candidate> candidates;
    for (const Format* const format : formats) {
        candidates.push_back({.format = format});
        if (*format->layout)
            candidates.push_back({.format = format, .layout = format->layout});
    }
    if (candidates.empty())
        return {};
    const std::string_view first = sample.First(kFirstLook);
    const bool isWhole = sample.IsWhole(kFirstLook);
    TryAll(candidates, first, name, rules, isWhole);
    if (!isWhole) {
        const double least = std::max(BestOf(candidates).score - kBehind, kOut);
        std::erase_if(candidates, [&](const Candidate& c) { return c.score < least; });
        if (candidates.empty())
            return {};
        TryAll(candidates, sample.First(kSecondLook), name, rules, true);
    }
    const Candidate& best = BestOf(candidates);
    return best.score >= kFits ? best : Candidate{};
}

} // namespace convfile
