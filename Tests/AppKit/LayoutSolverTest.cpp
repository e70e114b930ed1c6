#include "LayoutSolver.h"
#include "NSView.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    // A container of 100 x 50 with two views, whose contents are 30 x 10; text that is cut short grows in height.
    class LayoutSolver : public testing::Test {
    protected:
        NSRect frameOfOne(const std::vector<NSLayoutConstraint>& constraints, bool hasContent) const
        {
            LayoutProblem problem;
            problem.container = &container;
            problem.containerWidth = 100;
            problem.containerHeight = 50;
            for (const NSView* view : { &one, &two }) {
                LayoutProblem::Item& item = problem.items.emplace_back();
                item.view = view;
                if (hasContent)
                    item.naturalSize = [](double limit) {
                        return NSSize { std::min(30.0, limit), limit < 30 ? 20.0 : 10.0 };
                    };
            }
            problem.constraints = constraints;
            return solveLayout(problem).frames[0];
        }
        NSLayoutConstraint left(double at) { return one.leftAnchor().constraintEqualTo(container.leftAnchor(), at); }

        NSView container;
        NSView one;
        NSView two;
        const NSLayoutConstraint insideRightEdge =
            one.rightAnchor().constraintLessThanOrEqualTo(container.rightAnchor(), -5);
    };

    TEST_F(LayoutSolver, NamedCases)
    {
        struct Case {
            const char* name;
            std::vector<NSLayoutConstraint> constraints;
            NSRect frame;
            bool hasContent = true;
        };
        for (const Case& c : {
                 Case { "placed, as large as its content", { left(5) }, { { 5, 0 }, { 30, 10 } } },
                 Case { "no content and no length: nothing wide", { left(5) }, { { 5, 0 }, { 0, 0 } }, false },
                 Case { "nothing places it", {}, { { 0, 0 }, { 30, 10 } } },
                 Case { "of two equations that contradict each other the first one holds",
                        { left(5), left(40) },
                        { { 5, 0 }, { 30, 10 } } },
                 // The constant is known at once, the right edge follows from the container.
                 Case { "three equations for two unknowns: the last is left out",
                        { left(5), one.rightAnchor().constraintEqualTo(container.rightAnchor(), -5),
                          one.widthAnchor().constraintEqualToConstant(20) },
                        { { 5, 0 }, { 90, 10 } } },
                 Case { "an inequality cuts what the content wants, and makes it higher",
                        { left(80), insideRightEdge },
                        { { 80, 0 }, { 15, 20 } } },
                 Case { "an inequality that has room changes nothing",
                        { left(5), insideRightEdge },
                        { { 5, 0 }, { 30, 10 } } },
                 Case { "centred",
                        { one.centerXAnchor().constraintEqualTo(container.centerXAnchor()),
                          one.centerYAnchor().constraintEqualTo(container.centerYAnchor()) },
                        { { 35, 20 }, { 30, 10 } } },
                 Case { "as long as the left edge and the middle say",
                        { left(5), one.centerXAnchor().constraintEqualTo(container.centerXAnchor()) },
                        { { 5, 0 }, { 90, 10 } } },
                 Case { "an inequality cuts the height",
                        { one.topAnchor().constraintEqualTo(container.topAnchor(), 42),
                          one.bottomAnchor().constraintLessThanOrEqualTo(container.bottomAnchor()) },
                        { { 0, 42 }, { 30, 8 } } },
                 Case { "an inequality cuts what has its place from a neighbour",
                        { one.leftAnchor().constraintEqualTo(two.rightAnchor(), 60),
                          two.leftAnchor().constraintEqualTo(container.leftAnchor()), insideRightEdge },
                        { { 90, 0 }, { 5, 20 } } },
                 Case { "an inequality stretches the equation that may be stretched",
                        { left(5), one.rightAnchor().constraintEqualTo(container.rightAnchor(), -5).stretchable(),
                          two.leftAnchor().constraintEqualTo(container.leftAnchor(), 60),
                          one.rightAnchor().constraintLessThanOrEqualTo(two.leftAnchor(), -1) },
                        { { 5, 0 }, { 54, 10 } } },
                 Case { "and one further away through a neighbour",
                        { two.leftAnchor().constraintEqualTo(container.leftAnchor(), 5).stretchable(),
                          one.centerXAnchor().constraintEqualTo(two.centerXAnchor()),
                          one.leftAnchor().constraintGreaterThanOrEqualTo(container.leftAnchor(), 9) },
                        { { 9, 0 }, { 30, 10 } } },
                 Case { "but compresses none",
                        { left(20).stretchable(),
                          one.leftAnchor().constraintLessThanOrEqualTo(container.leftAnchor(), 10) },
                        { { 20, 0 }, { 30, 10 } } },
                 Case { "after a neighbour that is placed later",
                        { one.leftAnchor().constraintEqualTo(two.rightAnchor(), 6),
                          two.leftAnchor().constraintEqualTo(container.leftAnchor(), 10) },
                        { { 46, 0 }, { 30, 10 } } },
             })
            EXPECT_EQ(frameOfOne(c.constraints, c.hasContent), c.frame) << c.name;
    }

} // namespace

} // namespace quillbox
