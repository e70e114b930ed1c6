#pragma once

namespace quillbox {

// Lengths are points; one point is one logical pixel.
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

struct NSRect {
    NSPoint origin;
    NSSize size;
    friend bool operator==(const NSRect&, const NSRect&) = default;
};

} // namespace quillbox
