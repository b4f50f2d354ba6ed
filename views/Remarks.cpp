#include "views/Remarks.h"

#include "views/Display.h"

#include <algorithm>

namespace convfile::views {

namespace {

constexpr std::size_t kMostShown = 5;

/// The lines where they are a whole range or few, else the first of them.
std::string ShownLines(const Remark& remark) {
    const auto& lines = remark.lines;
    const std::uint64_t first = lines.front();
    if (lines.size() > 1 && remark.lastLine - first + 1 == remark.count)
        return std::to_string(first) + "-" + std::to_string(remark.lastLine);
    std::string shown;
    for (std::size_t i = 0; i < std::min(lines.size(), kMostShown); ++i)
        shown += (i > 0 ? ", " : "") + std::to_string(lines[i]);
    return remark.count > kMostShown ? shown + ", ..." : shown;
}

} // namespace

std::string ShownRemark(const Remark& remark) {
    std::string shown = std::string(NameOf(remark.kind)) + ": " + Shown(remark.text);
    const std::string count = std::to_string(remark.count);
    if (!remark.lines.empty())
        shown +=
            " (" + count + (remark.count == 1 ? " line: " : " lines: ") + ShownLines(remark) + ")";
    else if (remark.count > 1)
        shown += " (" + count + " times)";
    return shown;
}

void PrintRemarks(Sink& sink, const FileAccount& account) {
    for (const Remark& remark : account.remarks)
        sink.Write(ShownRemark(remark) + "\n");
}

} // namespace convfile::views
