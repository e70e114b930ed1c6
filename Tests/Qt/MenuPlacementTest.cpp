#include "MenuPlacement.h"

#include <gtest/gtest.h>

using namespace quillbox;

namespace {

// The screen less a panel of 30 at its top.
constexpr QRect kAvailable(0, 30, 1000, 770);

struct Case {
    const char* name;
    QSize menu;
    QRect beside;
    int rowTop;
    Qt::LayoutDirection direction;
    QRect expected;
};

TEST(MenuPlacement, BesideAnIconInAPanel)
{
    const Case cases[] = {
        { "below a panel at the top", { 200, 300 }, { 500, 3, 24, 24 }, 0, Qt::LeftToRight, { 500, 30, 200, 300 } },
        { "right to left", { 200, 300 }, { 500, 3, 24, 24 }, 0, Qt::RightToLeft, { 324, 30, 200, 300 } },
        { "above a panel below", { 200, 300 }, { 500, 776, 24, 24 }, 0, Qt::LeftToRight, { 500, 476, 200, 300 } },
        { "the roomier side", { 200, 600 }, { 500, 500, 0, 0 }, 0, Qt::LeftToRight, { 500, 30, 200, 470 } },
        { "larger than the screen", { 1200, 5000 }, { 500, 3, 24, 24 }, 0, Qt::LeftToRight, kAvailable },
    };
    for (const Case& given : cases)
        EXPECT_EQ(placeBesideAnchor(given.menu, given.beside, kAvailable, given.direction), given.expected)
            << given.name;
}

TEST(MenuPlacement, BesideARow)
{
    const Case cases[] = {
        { "its first row is level", { 200, 300 }, { 100, 30, 200, 400 }, 80, Qt::LeftToRight, { 297, 79, 200, 300 } },
        { "flips at the right edge", { 200, 300 }, { 700, 30, 200, 400 }, 80, Qt::LeftToRight, { 503, 79, 200, 300 } },
        { "right to left", { 200, 300 }, { 700, 30, 200, 400 }, 80, Qt::RightToLeft, { 503, 79, 200, 300 } },
        { "moves up at the bottom", { 200, 300 }, { 100, 30, 200, 770 }, 700, Qt::LeftToRight, { 297, 500, 200, 300 } },
        { "no room on either side", { 600, 300 }, { 300, 30, 500, 400 }, 80, Qt::LeftToRight, { 0, 79, 600, 300 } },
        { "taller than the screen", { 200, 9000 }, { 100, 30, 200, 400 }, 80, Qt::LeftToRight, { 297, 30, 200, 770 } },
    };
    for (const Case& given : cases) {
        const QRect row(given.beside.x() + 1, given.rowTop, given.beside.width() - 2, 20);
        EXPECT_EQ(placeBesideRow(given.menu, 1, row, given.beside, kAvailable, 3, given.direction), given.expected)
            << given.name;
    }
}

} // namespace
