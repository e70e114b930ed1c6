#include "MenuLayout.h"

#include <gtest/gtest.h>

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

TEST(MenuLayout, ScrollingStopsAtBothEnds)
{
    Heights heights;
    MenuLayout layout = heights.layout(12, 30);
    EXPECT_TRUE(layout.scrollBy(43));
    EXPECT_EQ(shown(layout), "4@-3 5@1 6@11 7@21 ");
    EXPECT_TRUE(layout.canScrollUp() && layout.canScrollDown());
    EXPECT_TRUE(layout.scrollBy(100000));
    EXPECT_EQ(shown(layout), "8@-4 9@6 10@10 11@20 ");
    EXPECT_FALSE(layout.canScrollDown());
    EXPECT_DOUBLE_EQ(layout.extent().end, 1);
    EXPECT_TRUE(layout.scrollBy(-100000));
    EXPECT_EQ(shown(layout), "0@0 1@10 2@20 ");
    EXPECT_DOUBLE_EQ(layout.extent().end, 3.0 / 12);
}

TEST(MenuLayout, ARowIsBroughtInSightByTheShortestWay)
{
    Heights heights;
    MenuLayout layout = heights.layout(100, 30);
    EXPECT_TRUE(layout.scrollToRow(3));
    EXPECT_EQ(shown(layout), "1@0 2@10 3@20 ");
    EXPECT_FALSE(layout.scrollToRow(2));
    EXPECT_TRUE(layout.scrollToRow(0));
    EXPECT_EQ(shown(layout), "0@0 1@10 2@20 ");
    EXPECT_TRUE(layout.scrollToRow(99));
    EXPECT_EQ(layout.visibleRow(99)->top, 26);
    EXPECT_EQ(layout.visibleRow(50), std::nullopt);
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
