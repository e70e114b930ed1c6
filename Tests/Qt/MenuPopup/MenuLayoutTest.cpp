#include "MenuLayout.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

using namespace quillbox;

namespace {

constexpr std::size_t kMany = 1'000'000'000;

// Rows of 10, every fifth one of 4; notes which rows were asked for.
struct Heights {
    std::set<std::size_t> asked;
    MenuLayout layout(std::size_t rowCount, int viewport)
    {
        MenuLayout result(rowCount, [this](std::size_t row) {
            asked.insert(row);
            return row % 5 == 4 ? 4 : 10;
        });
        result.setViewportHeight(viewport);
        return result;
    }
};

std::string shown(const MenuLayout& layout)
{
    std::string text;
    for (const auto& visible : layout.visibleRows())
        text += std::to_string(visible.row) + "@" + std::to_string(visible.top) + " ";
    return text;
}

TEST(MenuLayout, ShortListsAreWhollyInSight)
{
    Heights heights;
    MenuLayout layout = heights.layout(6, 54);
    EXPECT_EQ(layout.heightOfRows(1000), 54);
    EXPECT_EQ(shown(layout), "0@0 1@10 2@20 3@30 4@40 5@44 ");
    EXPECT_EQ(layout.rowAt(43), 4u);
    EXPECT_EQ(layout.rowAt(44), 5u);
    EXPECT_EQ(layout.rowAt(54), std::nullopt);
}

TEST(MenuLayout, ScrollsToBothEndsAndByTheShortestWayToARow)
{
    Heights heights;
    MenuLayout layout = heights.layout(12, 30);
    const auto by = [&](int pixels) { return [&layout, pixels] { return layout.scrollBy(pixels); }; };
    const auto to = [&](std::size_t row) { return [&layout, row] { return layout.scrollToRow(row); }; };
    const struct {
        std::function<bool()> scroll;
        bool hasScrolled;
        const char* shown;
        double end;
    } steps[] = {
        { by(43), true, "4@-3 5@1 6@11 7@21 ", 7.9 / 12 }, { by(100000), true, "8@-4 9@6 10@10 11@20 ", 1 },
        { by(-100000), true, "0@0 1@10 2@20 ", 3.0 / 12 }, { to(3), true, "1@0 2@10 3@20 ", 4.0 / 12 },
        { to(2), false, "1@0 2@10 3@20 ", 4.0 / 12 },      { to(11), true, "8@-4 9@6 10@10 11@20 ", 1 },
        { to(0), true, "0@0 1@10 2@20 ", 3.0 / 12 },
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.shown);
        EXPECT_EQ(step.scroll(), step.hasScrolled);
        EXPECT_EQ(shown(layout), step.shown);
        EXPECT_DOUBLE_EQ(layout.extent().end, step.end);
        EXPECT_EQ(layout.canScrollDown(), step.end < 1);
        EXPECT_EQ(layout.canScrollUp(), step.shown[0] != '0');
        EXPECT_EQ(layout.visibleRow(5).has_value(), step.end == 7.9 / 12);
    }
}

TEST(MenuLayout, OnlyRowsInSightAreAskedFor)
{
    Heights heights;
    MenuLayout layout = heights.layout(kMany, 300);
    layout.scrollToRow(kMany - 1);
    layout.scrollBy(-25);
    layout.scrollToRow(kMany / 2);
    // A page on is below what was in sight.
    EXPECT_GT(layout.pageAfter(kMany / 2), kMany / 2 + 10);
    EXPECT_LT(heights.asked.size(), 300u);
    EXPECT_NEAR(layout.extent().begin, 0.5, 1e-6);
}

} // namespace
