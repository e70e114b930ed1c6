#pragma once

#include "NSGeometry.h"
#include "NSLayoutConstraint.h"

#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace quillbox {

// One superview and its direct subviews, as plain values.
struct LayoutProblem {
    struct Item {
        const NSView* view = nullptr;
        // Set for a view that is not laid out and stays where it is.
        std::optional<NSRect> fixedFrame;
        // Returns the size that the view's content wants within a width (infinite for as wide as it likes). A width or
        // height below zero means that the content has no wish for it.
        std::function<NSSize(double widthLimit)> naturalSize;
        // Returns what the view needs to be usable. If nothing else says how high it is, it is that high.
        std::function<NSSize()> leastSize;
        // True for a view that scrolls. The others get their lengths before it, and it takes what is left.
        bool isScrolling = false;
    };

    const NSView* container = nullptr;
    // Where these are empty, the length follows from the constraints.
    std::optional<double> containerWidth;
    std::optional<double> containerHeight;
    std::vector<Item> items;
    // The constraints of the container, and those of the items' own lengths.
    std::vector<NSLayoutConstraint> constraints;
};

struct LayoutSolution {
    NSSize containerSize;
    // In the order of the items, in the coordinates of the container.
    std::vector<NSRect> frames;
};

// Returns the frames that follow from the constraints. Widths are settled first, then heights, since text is as tall as
// its width makes it. If two equations contradict each other, the first one holds. A view that no constraint places
// lies at the container's top left. If an inequality does not hold, the nearest stretchable equation is stretched until
// it does.
LayoutSolution solveLayout(const LayoutProblem& problem);

// Returns the width of the narrowest container, of `from` points or more, in which the inequalities hold and no item is
// narrower than it can be. The problem's own width does not count.
double leastContainerWidth(LayoutProblem problem, double from);

} // namespace quillbox
