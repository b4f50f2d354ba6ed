#include "export/LabelRoom.h"

#include <algorithm>
#include <cmath>

namespace convfile::exports {

Box LabelBox(double x, double y, double width, double height, double gap, Side side) {
    const double beside = 0.7 * gap; // off a corner
    switch (side) {
    case Side::Right:
        return {x + gap, y - height / 2, x + gap + width, y + height / 2};
    case Side::RightAbove:
        return {x + beside, y + beside, x + beside + width, y + beside + height};
    case Side::RightBelow:
        return {x + beside, y - beside - height, x + beside + width, y - beside};
    case Side::Left:
        return {x - gap - width, y - height / 2, x - gap, y + height / 2};
    case Side::LeftAbove:
        return {x - beside - width, y + beside, x - beside, y + beside + height};
    case Side::LeftBelow:
        return {x - beside - width, y - beside - height, x - beside, y - beside};
    case Side::Above:
        return {x - width / 2, y + gap, x + width / 2, y + gap + height};
    case Side::Below:
        break;
    }
    return {x - width / 2, y - gap - height, x + width / 2, y - gap};
}

namespace {

constexpr double kSpotsInCell = 20;

std::uint64_t Key(std::int64_t x, std::int64_t y) {
    constexpr int kBits = 32;
    return static_cast<std::uint64_t>(x) << kBits ^ (static_cast<std::uint64_t>(y) & 0xFFFFFFFFU);
}

} // namespace

std::int64_t LabelRoom::CellOf(double value) const {
    constexpr double kFar = 1e9; // more cells are no sheet
    return static_cast<std::int64_t>(std::floor(std::clamp(value / cell_, -kFar, kFar)));
}

template <class Found>
bool LabelRoom::ForEachCell(const Box& box, Found found) const {
    const std::int64_t right = CellOf(box.right);
    const std::int64_t top = CellOf(box.top);
    for (std::int64_t x = CellOf(box.left); x <= right; ++x) {
        for (std::int64_t y = CellOf(box.bottom); y <= top; ++y) {
            if (!found(Key(x, y)))
                return false;
        }
    }
    return true;
}

void LabelRoom::Take(const Box& box) {
    ForEachCell(box, [&](std::uint64_t key) {
        taken_[key].push_back(box);
        return true;
    });
}

void LabelRoom::TakeMark(double x, double y, double size) {
    const std::uint64_t spot = Key(CellOf(x * kSpotsInCell), CellOf(y * kSpotsInCell));
    if (spots_.insert(spot).second)
        Take({x - size, y - size, x + size, y + size});
}

bool LabelRoom::IsFree(const Box& box) const {
    return ForEachCell(box, [&](std::uint64_t key) {
        const auto found = taken_.find(key);
        return found == taken_.end() || std::ranges::none_of(found->second, [&](const Box& taken) {
                   return taken.Overlaps(box);
               });
    });
}

std::optional<Box> LabelRoom::Place(double x, double y, double width, double height, double gap,
                                    std::span<const Side> sides, const Box& limits) {
    for (const Side side : sides) {
        const Box box = LabelBox(x, y, width, height, gap, side);
        if (limits.Holds(box) && IsFree(box)) {
            Take(box);
            return box;
        }
    }
    return std::nullopt;
}

} // namespace convfile::exports
