#include "web/FileLines.h"

#include "views/Display.h"

#include <algorithm>
#include <string>

namespace convfile::web {

namespace {

/// So many bytes of a line are shown.
constexpr std::size_t kMostShown = 2000;

} // namespace

FileLines::FileLines(std::string_view bytes, bool crEnds) : bytes_(bytes) {
    constexpr std::size_t kNowhere = std::string_view::npos;
    std::size_t start = 0;
    std::size_t cr = crEnds ? bytes.find('\r') : kNowhere; // the first from the start on
    while (start < bytes.size()) {
        starts_.push_back(static_cast<std::uint32_t>(start));
        std::size_t end = std::min(bytes.find('\n', start), bytes.size());
        if (cr < end) {
            // A run of them before an LF is one line end.
            const std::size_t behind = bytes.find_first_not_of('\r', cr);
            if (behind != end || end == bytes.size())
                end = cr;
        }
        start = end + 1;
        if (cr != kNowhere && cr < start)
            cr = bytes.find('\r', start);
    }
}

void FileLines::WriteLine(views::JsonWriter<false>& json, std::size_t line) const {
    const std::size_t start = starts_[line];
    const std::size_t next = line + 1 < starts_.size() ? starts_[line + 1] : bytes_.size();
    std::string_view text = bytes_.substr(start, next - start);
    while (text.ends_with('\n') || text.ends_with('\r'))
        text.remove_suffix(1);
    std::string shown = views::Shown(text.substr(0, kMostShown));
    if (text.size() > kMostShown)
        shown += " ... (" + std::to_string(text.size()) + " bytes)";
    json.Utf8(shown);
}

} // namespace convfile::web
