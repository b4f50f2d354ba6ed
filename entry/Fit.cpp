#include "entry/Fit.h"

#include <algorithm>

namespace convfile {

namespace {

/// What a line that is known but not read, or not in its unit, lacks of a line's worth: it speaks
/// for the format nearly as a record does.
constexpr double kNotReadCosts = 0.1;

/// The part of a fault that a record is which lacks a field: instruments leave out what they do not
/// know, but not everywhere.
constexpr double kIncompleteCosts = 0.75;

/// A value that nobody measures tells more against a format than one that somebody could have
/// measured tells for it: numbers from the wrong column are often believable by chance.
constexpr double kUnbelievableCosts = 2;

/// What points with everything measured add, so that of two formats that read the same lines the
/// one wins that gets more out of them.
constexpr double kCompletePoints = 0.1;

/// What records add, as many as there are in a line, for the same reason: a station that another
/// format knows only as a line that it does not read.
constexpr double kRecords = 0.2;

/// A guess before anything was seen, worth so many lines, points or numbers: few say less than
/// many.
constexpr double kBenefitOfDoubt = 1;

bool IsKnown(RemarkKind kind) {
    return kind == RemarkKind::NotRead || kind == RemarkKind::Unit ||
           kind == RemarkKind::NoMeasurement;
}

/// A last line without its end says nothing of the format; lines of which half have none do.
bool IsDamage(RemarkKind kind, bool isEverywhere) {
    return kind == RemarkKind::LongLine || kind == RemarkKind::Nul ||
           (kind == RemarkKind::LineEnd && isEverywhere);
}

/// The part of good ones among all, where a few bad ones among few are not held against it.
double Share(double good, double bad) {
    return (std::max(good, 0.0) + kBenefitOfDoubt) / (std::max(good, 0.0) + bad + kBenefitOfDoubt);
}

} // namespace

double ScoreOf(const FileAccount& account, const counting::Counts& counts) {
    const auto lines = static_cast<double>(account.lines - account.blank);
    double known = 0; // of the causes of one line only one counts
    double damage = 0;
    double faults = 0;
    for (const Remark& remark : account.remarks) {
        if (remark.lines.empty())
            continue; // a file is no worse for what has no line
        const auto count = static_cast<double>(remark.count);
        if (IsKnown(remark.kind))
            known = std::max(known, count);
        else if (IsDamage(remark.kind, 2 * count >= lines))
            damage = std::max(damage, count);
        else if (remark.kind == RemarkKind::NoNumber)
            faults += count;
        else if (remark.kind == RemarkKind::Incomplete)
            faults += kIncompleteCosts * count;
    }
    const double worth =
        static_cast<double>(account.read - account.blank) - damage - faults - kNotReadCosts * known;
    if (worth <= 0)
        return 0;
    const auto records = static_cast<double>(counts.records);
    const auto points = static_cast<double>(counts.points);
    const auto unbelievable = static_cast<double>(counts.unbelievable);
    const double sense =
        Share(points - unbelievable, kUnbelievableCosts * unbelievable) *
        Share(records - faults, std::min(faults, records)) *
        Share(static_cast<double>(account.numbers), static_cast<double>(account.noNumbers));
    const double complete =
        points > 0 ? kCompletePoints * static_cast<double>(counts.complete) / points : 0;
    const double written = kRecords * std::min(records / lines, 1.0);
    return (worth / (lines + kBenefitOfDoubt) + complete + written) * sense;
}

} // namespace convfile
