#pragma once

#include "NSGeometry.h"
#include "NSLayoutConstraint.h"

#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace quillbox {

// One superview with the views directly in it, as plain values.
struct LayoutProblem {
    struct Item {
        const NSView* view = nullptr;
        // A view whose frame is not laid out stays where it is.
        std::optional<NSRect> fixedFrame;
        // The size that its content wants within a width (infinite: as wide as it likes); a width or height below
        // zero is one that it does not mind.
        std::function<NSSize(double widthLimit)> naturalSize;
    };

    const NSView* container = nullptr;
    // What is not known follows from the constraints.
    std::optional<double> containerWidth;
    std::optional<double> containerHeight;
    std::vector<Item> items;
    // Of the container, and of the items' own lengths.
    std::vector<NSLayoutConstraint> constraints;
};

struct LayoutSolution {
    NSSize containerSize;
    // In the order of the items, in the container's coordinates.
    std::vector<NSRect> frames;
};

// The frames that the constraints give. Widths are settled first, then heights, since text is as tall as its
// width makes it. Equations are followed from what is known; where they lead no further, a view takes the size of
// its content, as far as its inequalities let it. Of two equations that contradict each other the first one
// holds. A view that nothing places lies at the container's top left.
LayoutSolution solveLayout(const LayoutProblem& problem);

} // namespace quillbox
