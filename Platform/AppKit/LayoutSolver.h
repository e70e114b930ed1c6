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
        // What it needs to be usable; where nothing else says how high it is, it is that high.
        std::function<NSSize()> leastSize;
        // It scrolls: others have their lengths before it, and it takes what is left.
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

// The frames that the constraints give. Widths are settled first, then heights, since text is as tall as its
// width makes it. Equations are followed from what is known; where they lead no further, a view takes the size of
// its content, as far as its inequalities let it. Of two equations that contradict each other the first one
// holds. A view that nothing places lies at the container's top left. Where an inequality does not hold, the nearest
// stretchable equation is stretched until it does.
LayoutSolution solveLayout(const LayoutProblem& problem);

// The narrowest container, of `from` points or more, in which the inequalities hold and no item is narrower than it
// can be. The problem's own width does not count.
double leastContainerWidth(LayoutProblem problem, double from);

} // namespace quillbox
