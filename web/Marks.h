#pragma once

#include "web/BookRows.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace convfile::web {

/// Where the places of a conversion's drawing are on its sheet, and which rows of the table they
/// come from. The conversion and its rows have to outlive it.
class Marks {
public:
    struct Mark {
        double x = 0; ///< pixels of the sheet
        double y = 0;
        std::size_t row = 0; ///< of its first record
        std::string_view name = {};
    };

    Marks(const views::Conversion& conversion, const BookRows& rows);

    double Width() const { return width_; }
    double Height() const { return height_; }
    std::size_t Size() const { return marks_.size(); }

    /// The mark nearest to a point of the sheet, not farther than so many pixels; or null.
    const Mark* At(double x, double y, double farthest) const;
    /// The mark of a row; null where it has none.
    const Mark* OfRow(std::size_t row) const;

private:
    const BookRows& rows_;
    double width_ = 0;
    double height_ = 0;
    std::vector<Mark> marks_;
    std::unordered_map<std::uint64_t, std::size_t> byLine_; ///< of the first record
    /// By job and name, the first of that name.
    std::unordered_map<std::string, std::size_t> byName_;
};

} // namespace convfile::web
