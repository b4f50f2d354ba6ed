#pragma once

#include "views/JsonWriter.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace convfile::web {

/// The lines of a file as they are counted when it is read. The bytes are borrowed.
class FileLines {
public:
    /// `crEnds`: a CR that belongs to no LF ends a line, too.
    FileLines(std::string_view bytes, bool crEnds);

    std::size_t Size() const { return starts_.size(); }
    /// A line, from 0, for people: its beginning where it is very long, without its line end.
    void WriteLine(views::JsonWriter<false>& json, std::size_t line) const;

private:
    std::string_view bytes_;
    std::vector<std::uint32_t> starts_; ///< a file here has less than 4 GiB
};

} // namespace convfile::web
