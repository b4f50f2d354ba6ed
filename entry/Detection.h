#pragma once

#include "entry/FormatTable.h"
#include "entry/Sample.h"
#include "framework/ReadingRules.h"

#include <string>
#include <vector>

/// Which format a file has, told from what is in it: every format reads the beginning, and that
/// which makes most sense of it is taken. Nothing is known of a format here.
namespace convfile {

/// A format, and for one with several layouts the extension of the layout.
struct Candidate {
    const Format* format = nullptr;
    const char* layout = "";
    double score = 0;
};

/// How well one fits the first few kilobytes.
double FirstScore(const Format& format, Sample& sample, const std::string& name,
                  const ReadingRules& rules);

/// That of these formats (null among them: passed over) which fits best; none where none fits.
Candidate FindFormat(const std::vector<const Format*>& formats, Sample& sample,
                     const std::string& name, const ReadingRules& rules);

} // namespace convfile
