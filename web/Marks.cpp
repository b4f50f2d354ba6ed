#include "web/Marks.h"

#include "export/FromBook.h"
#include "export/SvgSheet.h"

namespace convfile::web {

namespace {

std::string KeyOf(std::size_t job, std::string_view name) {
    return std::to_string(job) + "\n" + std::string(name);
}

} // namespace

Marks::Marks(const views::Conversion& conversion, const BookRows& rows) : rows_(rows) {
    const exports::Work work =
        exports::WorkFrom(conversion.fieldBook, views::BareName(conversion.path));
    const exports::Drawing drawing = exports::MakeDrawing(work);
    const exports::SvgSheet sheet(drawing, work.file);
    width_ = sheet.Width();
    height_ = sheet.Height();
    marks_.reserve(drawing.marks.size());
    for (const exports::DrawnGroup& drawn : drawing.groups) {
        for (std::size_t i = drawn.group.first; i < drawn.group.end; ++i) {
            const exports::Placed& placed = drawing.marks[i];
            byLine_.emplace(placed.line, marks_.size());
            if (!placed.name.empty())
                byName_.emplace(KeyOf(drawn.group.job, placed.name), marks_.size());
            marks_.push_back({.x = sheet.X(placed.east),
                              .y = sheet.Y(placed.north),
                              .row = rows.RowOf(placed.line, placed.name),
                              .name = placed.name});
        }
    }
}

const Marks::Mark* Marks::At(double x, double y, double farthest) const {
    const Mark* nearest = nullptr;
    double least = farthest * farthest;
    for (const Mark& mark : marks_) {
        const double square = (mark.x - x) * (mark.x - x) + (mark.y - y) * (mark.y - y);
        if (square <= least) {
            least = square;
            nearest = &mark;
        }
    }
    return nearest;
}

const Marks::Mark* Marks::OfRow(std::size_t row) const {
    if (!rows_.IsStationOrPoint(row))
        return nullptr;
    const std::string_view name = rows_.NameOf(row);
    // A record without a name, and one of a name for several points, is a place of its own.
    const auto own = byLine_.find(rows_.LineOf(row));
    if (own != byLine_.end() && marks_[own->second].name == name)
        return &marks_[own->second];
    if (name.empty())
        return nullptr;
    const auto named = byName_.find(KeyOf(rows_.JobOf(row), name));
    return named == byName_.end() ? nullptr : &marks_[named->second];
}

} // namespace convfile::web
