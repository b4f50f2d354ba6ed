#pragma once

#include <algorithm>
#include <limits>

namespace convfile::exports {

/// A rectangle along the axes; one without anything in it until something is added.
struct Box {
    double left = std::numeric_limits<double>::infinity();
    double bottom = std::numeric_limits<double>::infinity();
    double right = -std::numeric_limits<double>::infinity();
    double top = -std::numeric_limits<double>::infinity();

    bool IsEmpty() const { return left > right; }
    double Width() const { return IsEmpty() ? 0 : right - left; }
    double Height() const { return IsEmpty() ? 0 : top - bottom; }

    void Add(double x, double y) {
        left = std::min(left, x);
        right = std::max(right, x);
        bottom = std::min(bottom, y);
        top = std::max(top, y);
    }
    void Add(const Box& other) {
        if (other.IsEmpty())
            return;
        Add(other.left, other.bottom);
        Add(other.right, other.top);
    }
    Box Moved(double x, double y) const { return {left + x, bottom + y, right + x, top + y}; }
    Box Grown(double by) const { return {left - by, bottom - by, right + by, top + by}; }
    bool Overlaps(const Box& other) const {
        return left < other.right && other.left < right && bottom < other.top && other.bottom < top;
    }
    bool Holds(const Box& other) const {
        return left <= other.left && other.right <= right && bottom <= other.bottom &&
               other.top <= top;
    }
};

} // namespace convfile::exports
