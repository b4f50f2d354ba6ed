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

double Try(const Candidate& candidate, std::string_view bytes, const std::string& name,
           const ReadingRules& rules) {
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
    return converted ? ScoreOf(account, book.Finish()) : 0;
}

void TryAll(std::vector<Candidate>& candidates, std::string_view bytes, const std::string& name,
            const ReadingRules& rules) {
    for (Candidate& candidate : candidates)
        candidate.score = Try(candidate, bytes, name, rules);
}

const Candidate& BestOf(const std::vector<Candidate>& candidates) {
    return *std::ranges::max_element(candidates, {}, &Candidate::score);
}

} // namespace

double FirstScore(const Format& format, Sample& sample, const std::string& name,
                  const ReadingRules& rules) {
    return Try({.format = &format}, sample.First(kFirstLook), name, rules);
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
    TryAll(candidates, sample.First(kFirstLook), name, rules);
    if (!sample.IsWhole(kFirstLook)) {
        const double least = std::max(BestOf(candidates).score - kBehind, kOut);
        std::erase_if(candidates, [&](const Candidate& c) { return c.score < least; });
        if (candidates.empty())
            return {};
        TryAll(candidates, sample.First(kSecondLook), name, rules);
    }
    const Candidate& best = BestOf(candidates);
    return best.score >= kFits ? best : Candidate{};
}

} // namespace convfile
