#pragma once

#include <algorithm>
#include <cstddef>

namespace quillbox {

// Lengths are in points; one point is one logical pixel.
struct NSPoint {
    double x = 0;
    double y = 0;
    friend bool operator==(const NSPoint&, const NSPoint&) = default;
};

struct NSSize {
    double width = 0;
    double height = 0;
    friend bool operator==(const NSSize&, const NSSize&) = default;
};

// The origin is the top left corner; y grows downwards.
struct NSRect {
    NSPoint origin;
    NSSize size;
    double minX() const { return origin.x; }
    double minY() const { return origin.y; }
    double midX() const { return origin.x + size.width / 2; }
    double midY() const { return origin.y + size.height / 2; }
    double maxX() const { return origin.x + size.width; }
    double maxY() const { return origin.y + size.height; }
    bool contains(NSPoint point) const
    {
        return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
    }
    // Returns the area that both rectangles cover; its size is zero if there is none.
    NSRect intersection(NSRect other) const
    {
        const double left = std::max(minX(), other.minX());
        const double top = std::max(minY(), other.minY());
        return { { left, top },
                 { std::max(0.0, std::min(maxX(), other.maxX()) - left),
                   std::max(0.0, std::min(maxY(), other.maxY()) - top) } };
    }
    friend bool operator==(const NSRect&, const NSRect&) = default;
};

struct NSEdgeInsets {
    double top = 0;
    double left = 0;
    double bottom = 0;
    double right = 0;
};

// Part of a text or a list: the index at which it begins, and its length.
struct NSRange {
    std::size_t location = 0;
    std::size_t length = 0;
    friend bool operator==(const NSRange&, const NSRange&) = default;
};

} // namespace quillbox
