#include "MenuPlacement.h"
#include "WorkArea.h"

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

// A large screen and, to its right, a smaller one whose lower edge is higher.
TEST(MenuPlacement, LeavesThePanelsOfEachOfSeveralScreensFree)
{
    constexpr QSize kAll(3200, 1200);
    constexpr QRect kLarge(0, 0, 1920, 1200);
    constexpr QRect kSmall(1920, 0, 1280, 800);
    const PanelReserve aboveLarge { 0, 0, 30, 0, 0, 0, 0, 0, 0, 1919, 0, 0 };
    const PanelReserve belowSmall { 0, 0, 0, 440, 0, 0, 0, 0, 0, 0, 1920, 3199 };
    const PanelReserve rightOfSmall { 0, 50, 0, 0, 0, 0, 0, 799, 0, 0, 0, 0 };
    // At the left edge of the small screen: the edge of all screens is on the other side of the large one.
    const PanelReserve between { 1970, 0, 0, 0, 0, 799, 0, 0, 0, 0, 0, 0 };
    const struct {
        const char* name;
        QRect screen;
        std::vector<PanelReserve> panels;
        QRect expected;
    } cases[] = {
        { "a panel above", kLarge, { aboveLarge }, { 0, 30, 1920, 1170 } },
        { "on the other screen", kSmall, { aboveLarge }, kSmall },
        { "below the lower edge of the higher screen", kSmall, { belowSmall, rightOfSmall }, { 1920, 0, 1230, 760 } },
        { "that one on the other screen", kLarge, { belowSmall, rightOfSmall }, kLarge },
        { "between the screens", kLarge, { between }, kLarge },
        { "between them, on its own", kSmall, { between }, { 1970, 0, 1230, 800 } },
    };
    for (const auto& given : cases)
        EXPECT_EQ(withoutPanels(given.screen, kAll, given.panels), given.expected) << given.name;
}

} // namespace
