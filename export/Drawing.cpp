#include "export/Drawing.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace convfile::exports {

namespace {

constexpr double kAlone = 10; // metres around a place that has no other

/// Groups are apart by so many spacings, at least by this part of the sheet.
constexpr double kGapInSpacings = 2;
constexpr double kGapInSheet = 0.05;

/// The range in which the middle eight tenths of the values lie.
double MiddleRange(std::vector<double>& values) {
    const std::size_t tenth = values.size() / 10;
    const auto low = values.begin() + static_cast<std::ptrdiff_t>(tenth);
    const auto high = values.end() - static_cast<std::ptrdiff_t>(tenth) - 1;
    std::nth_element(values.begin(), low, values.end());
    const double least = *low; // what comes next may move it
    std::nth_element(low, high, values.end());
    return *high - least;
}

/// How far apart the places of a group typically are; 0 where they are not. A few that lie far
/// off, as targets for the orientation do, count for nothing.
double SpacingOf(std::span<const Placed> places) {
    std::vector<double> east;
    std::vector<double> north;
    for (const Placed& placed : places) {
        east.push_back(placed.east);
        north.push_back(placed.north);
    }
    const double width = MiddleRange(east);
    const double height = MiddleRange(north);
    const auto count = static_cast<double>(places.size());
    return std::max(std::sqrt(width) * std::sqrt(height) / std::sqrt(count),
                    std::max(width, height) / count);
}

class SheetMaker {
public:
    SheetMaker(Plan plan, Drawing& drawing) : drawing_(drawing) {
        drawing_.marks = std::move(plan.places);
        drawing_.lines = std::move(plan.lines);
        for (const Group& group : plan.groups) {
            DrawnGroup& drawn = drawing_.groups.emplace_back(DrawnGroup{.group = group, .box = {}});
            for (std::size_t i = group.first; i < group.end; ++i)
                drawn.box.Add(drawing_.marks[i].east, drawing_.marks[i].north);
        }
    }

    void Make() {
        FindSpacing();
        for (DrawnGroup& drawn : drawing_.groups) {
            if (drawn.group.fixed)
                drawing_.box.Add(drawn.box);
            else
                loose_.push_back(&drawn);
        }
        if (!loose_.empty())
            PutLooseInRows();
        for (Placed& mark : drawing_.marks)
            mark.height = ValueOrZero(mark.height);
    }

private:
    void FindSpacing() {
        double squares = 0;
        double count = 0;
        for (const DrawnGroup& drawn : drawing_.groups) {
            const std::span<const Placed> places(&drawing_.marks[drawn.group.first],
                                                 drawn.group.end - drawn.group.first);
            const double spacing = SpacingOf(places);
            if (spacing > 0) {
                const auto weight = static_cast<double>(places.size());
                squares += weight * spacing * spacing;
                count += weight;
            }
        }
        const double spacing = count > 0 ? std::sqrt(squares / count) : kAlone;
        drawing_.spacing = std::isfinite(spacing) && spacing > 0 ? spacing : kAlone;
    }

    /// Rows from left to right, below what is fixed; the sheet becomes a little wider than high.
    /// Where nothing is fixed, the first group stays where it is.
    void PutLooseInRows() {
        constexpr double kWiderThanHigh = 1.3;
        double size = std::max(drawing_.box.Width(), drawing_.box.Height());
        double widest = drawing_.box.Width();
        for (const DrawnGroup* drawn : loose_) {
            size = std::max({size, drawn->box.Width(), drawn->box.Height()});
            widest = std::max(widest, drawn->box.Width());
        }
        const double gap = std::max(kGapInSpacings * drawing_.spacing, kGapInSheet * size);
        double area = drawing_.box.Width() * drawing_.box.Height();
        for (const DrawnGroup* drawn : loose_)
            area += (drawn->box.Width() + gap) * (drawn->box.Height() + gap);
        const bool fixed = !drawing_.box.IsEmpty();
        const double left = fixed ? drawing_.box.left : loose_.front()->box.left;
        const double right = left + std::max(widest, std::sqrt(kWiderThanHigh * area));
        double top = fixed ? drawing_.box.bottom - gap : loose_.front()->box.top;
        double x = left;
        double rowHeight = 0;
        for (DrawnGroup* drawn : loose_) {
            if (x > left && x + drawn->box.Width() > right) {
                x = left;
                top -= rowHeight + gap;
                rowHeight = 0;
            }
            Move(*drawn, x - drawn->box.left, top - drawn->box.top);
            x += drawn->box.Width() + gap;
            rowHeight = std::max(rowHeight, drawn->box.Height());
        }
    }

    void Move(DrawnGroup& drawn, double east, double north) {
        constexpr int kDecimals = 4;
        for (std::size_t i = drawn.group.first; i < drawn.group.end; ++i) {
            Placed& mark = drawing_.marks[i];
            mark.east = ArrotondatoAtDec(mark.east + east, kDecimals);
            mark.north = ArrotondatoAtDec(mark.north + north, kDecimals);
        }
        drawn.box = drawn.box.Moved(east, north);
        drawing_.box.Add(drawn.box);
    }

    Drawing& drawing_;
    std::vector<DrawnGroup*> loose_;
};

} // namespace

Drawing MakeDrawing(const Work& work) {
    Drawing drawing;
    SheetMaker(MakePlan(work), drawing).Make();
    return drawing;
}

double RoundDown125(double value) {
    const double power = std::pow(10, std::floor(std::log10(value)));
    for (const double digit : {5.0, 2.0}) {
        if (digit * power <= value)
            return digit * power;
    }
    return power;
}

} // namespace convfile::exports
