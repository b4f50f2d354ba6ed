#pragma once

#include "export/Box.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace convfile::exports {

/// A side of a mark on which its label may stand.
enum class Side { Right, RightAbove, RightBelow, Left, LeftAbove, LeftBelow, Above, Below };

/// The rectangle of a label of that size at that side of a mark, `gap` away from its middle. Up is
/// positive.
Box LabelBox(double x, double y, double width, double height, double gap, Side side);

/// The room on a sheet: what is taken by marks and labels, found again by where it is.
class LabelRoom {
public:
    /// `cell`: about the size of a small label.
    explicit LabelRoom(double cell) : cell_(cell) {}

    void Take(const Box& box);
    /// Takes the square of a mark, `size` to each side of its middle. Of marks on the same spot, a
    /// fraction of a cell, one counts: there may be a hundred thousand.
    void TakeMark(double x, double y, double size);
    bool IsFree(const Box& box) const;

    /// Takes the first place at these sides that is free and lies within `limits`; nothing where
    /// there is no room.
    std::optional<Box> Place(double x, double y, double width, double height, double gap,
                             std::span<const Side> sides, const Box& limits);

private:
    std::int64_t CellOf(double value) const;
    /// Calls `found` with the key of each cell that the box touches, until it gives false.
    template <class Found>
    bool ForEachCell(const Box& box, Found found) const;

    double cell_;
    std::unordered_map<std::uint64_t, std::vector<Box>> taken_;
    std::unordered_set<std::uint64_t> spots_;
};

} // namespace convfile::exports
