#include "LayoutSolver.h"
#include "NSView.h"

#include <gtest/gtest.h>

#include <functional>

namespace quillbox {

namespace {

    // A container of 100 x 50 with two views, whose contents are 30 x 10; text that is cut short grows in height.
    struct Room {
        NSView container;
        NSView one;
        NSView two;

        std::vector<NSRect> solve(std::vector<NSLayoutConstraint> constraints, bool hasSize = true)
        {
            LayoutProblem problem;
            problem.container = &container;
            problem.containerWidth = 100;
            problem.containerHeight = 50;
            for (const NSView* view : { &one, &two }) {
                LayoutProblem::Item item;
                item.view = view;
                if (hasSize)
                    item.naturalSize = [](double limit) {
                        return NSSize { std::min(30.0, limit), limit < 30 ? 20.0 : 10.0 };
                    };
                problem.items.push_back(item);
            }
            problem.constraints = std::move(constraints);
            return solveLayout(problem).frames;
        }
    };

    using Constraints = std::vector<NSLayoutConstraint>;

    struct Case {
        const char* name;
        std::function<Constraints(Room&)> constraints;
        NSRect one;
        bool hasSize = true;
    };

    NSLayoutConstraint left(Room& room, double at)
    {
        return room.one.leftAnchor().constraintEqualTo(room.container.leftAnchor(), at);
    }

    TEST(LayoutSolver, NamedCases)
    {
        for (const Case& c : {
                 Case { "placed, as large as its content",
                        [](Room& r) { return Constraints { left(r, 5) }; },
                        { { 5, 0 }, { 30, 10 } } },
                 Case { "of two equations that contradict each other the first one holds",
                        [](Room& r) {
                            return Constraints { left(r, 5), left(r, 40) };
                        },
                        { { 5, 0 }, { 30, 10 } } },
                 Case { "three equations for two unknowns: the last is left out",
                        [](Room& r) {
                            return Constraints { left(r, 5),
                                                 r.one.rightAnchor().constraintEqualTo(r.container.rightAnchor(), -5),
                                                 r.one.widthAnchor().constraintEqualToConstant(20) };
                        },
                        // The constant is known at once, the right edge follows from the container.
                        { { 5, 0 }, { 90, 10 } } },
                 Case { "an inequality cuts what the content wants, and makes it higher",
                        [](Room& r) {
                            return Constraints { left(r, 80),
                                                 r.one.rightAnchor().constraintLessThanOrEqualTo(
                                                     r.container.rightAnchor(), -5) };
                        },
                        { { 80, 0 }, { 15, 20 } } },
                 Case { "an inequality that has room changes nothing",
                        [](Room& r) {
                            return Constraints { left(r, 5),
                                                 r.one.rightAnchor().constraintLessThanOrEqualTo(
                                                     r.container.rightAnchor(), -5) };
                        },
                        { { 5, 0 }, { 30, 10 } } },
                 Case { "centred",
                        [](Room& r) {
                            return Constraints { r.one.centerXAnchor().constraintEqualTo(r.container.centerXAnchor()),
                                                 r.one.centerYAnchor().constraintEqualTo(r.container.centerYAnchor()) };
                        },
                        { { 35, 20 }, { 30, 10 } } },
                 Case { "no content and no length: nothing wide",
                        [](Room& r) { return Constraints { left(r, 5) }; },
                        { { 5, 0 }, { 0, 0 } },
                        false },
                 Case { "nothing places it", [](Room&) { return Constraints(); }, { { 0, 0 }, { 30, 10 } } },
                 Case { "after a neighbour that is placed later",
                        [](Room& r) {
                            return Constraints { r.one.leftAnchor().constraintEqualTo(r.two.rightAnchor(), 6),
                                                 r.two.leftAnchor().constraintEqualTo(r.container.leftAnchor(), 10) };
                        },
                        { { 46, 0 }, { 30, 10 } } },
             }) {
            Room room;
            EXPECT_EQ(room.solve(c.constraints(room), c.hasSize)[0], c.one) << c.name;
        }
    }

} // namespace

} // namespace quillbox
