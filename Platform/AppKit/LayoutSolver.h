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
        // What it needs to be usable; where nothing else says how high it is, it is that high.
        std::function<NSSize()> leastSize;
        // It scrolls: others have their lengths before it, and it takes what is left.
        bool isScrolling = false;
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
// holds. A view that nothing places lies at the container's top left. Where an inequality does not hold, the nearest
// stretchable equation is stretched until it does.
LayoutSolution solveLayout(const LayoutProblem& problem);

// The narrowest container, of `from` points or more, in which the inequalities hold and no item is narrower than it
// can be. The problem's own width does not count.
double leastContainerWidth(LayoutProblem problem, double from);

} // namespace quillbox
