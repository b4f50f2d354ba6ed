#include "entry/Fit.h"

#include <algorithm>

namespace convfile {

namespace {

// What a remark takes from its line's worth. A line that is known but not read tells less for the
// format than a record; a line that was read wrongly tells against it.
constexpr double kNotReadCosts = 0.25;
constexpr double kFaultCosts = 1;

/// What points with everything measured add, so that of two formats that read the same lines the
/// one wins that gets more out of them.
constexpr double kCompletePoints = 0.1;

/// A guess before anything was seen, worth so many points or numbers: few say less than many.
constexpr double kBenefitOfDoubt = 1;

double CostOf(RemarkKind kind) {
    switch (kind) {
    case RemarkKind::NotRead:
    case RemarkKind::Unit:
        return kNotReadCosts;
    case RemarkKind::NoNumber:
    case RemarkKind::Incomplete:
    case RemarkKind::NoMeasurement:
    case RemarkKind::LongLine:
    case RemarkKind::LineEnd:
    case RemarkKind::Nul:
        return kFaultCosts;
    default: // skipped lines are counted as such; the rest says nothing of the format
        return 0;
    }
}

/// The part of good ones among all, where a few bad ones among few are not held against it.
double Share(double good, double bad) {
    return (good + kBenefitOfDoubt) / (good + bad + kBenefitOfDoubt);
}

} // namespace

double ScoreOf(const FileAccount& account, const counting::Counts& counts) {
    const auto lines = static_cast<double>(account.lines - account.blank);
    if (lines <= 0)
        return 0;
    double worth = static_cast<double>(account.read - account.blank);
    for (const Remark& remark : account.remarks) {
        if (!remark.lines.empty()) // a file is no worse for what has no line
            worth -= CostOf(remark.kind) * static_cast<double>(remark.count);
    }
    if (worth <= 0)
        return 0;
    const auto points = static_cast<double>(counts.points);
    const auto unbelievable = static_cast<double>(counts.unbelievable);
    const double believable = Share(points - unbelievable, unbelievable);
    const double numbers =
        Share(static_cast<double>(account.numbers), static_cast<double>(account.noNumbers));
    const double complete =
        points > 0 ? kCompletePoints * static_cast<double>(counts.complete) / points : 0;
    return worth / lines * believable * numbers + complete * believable;
}

} // namespace convfile
