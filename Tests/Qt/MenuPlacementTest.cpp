#include "MenuPlacement.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace quillbox;

QT_BEGIN_NAMESPACE
void PrintTo(const QRect& rect, std::ostream* out)
{
    *out << rect.x() << ',' << rect.y() << ' ' << rect.width() << 'x' << rect.height();
}
QT_END_NAMESPACE

namespace {

// The screen less a panel of 30 at its top.
constexpr QRect kAvailable(0, 30, 1000, 770);

struct AnchorCase {
    const char* name;
    QSize menu;
    QRect anchor;
    Qt::LayoutDirection direction;
    QRect expected;
};

class PlaceBesideAnchor : public testing::TestWithParam<AnchorCase> { };

TEST_P(PlaceBesideAnchor, GivesThePlace)
{
    const AnchorCase& given = GetParam();
    EXPECT_EQ(placeBesideAnchor(given.menu, given.anchor, kAvailable, given.direction), given.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Icons, PlaceBesideAnchor,
    testing::Values(
        AnchorCase { "BelowAPanelAtTheTop", { 200, 300 }, { 500, 3, 24, 24 }, Qt::LeftToRight, { 500, 30, 200, 300 } },
        AnchorCase { "NotPastTheRightEdge", { 200, 300 }, { 970, 3, 24, 24 }, Qt::LeftToRight, { 800, 30, 200, 300 } },
        AnchorCase {
            "EndsAtTheIconRightToLeft", { 200, 300 }, { 500, 3, 24, 24 }, Qt::RightToLeft, { 324, 30, 200, 300 } },
        AnchorCase {
            "AboveAPanelAtTheBottom", { 200, 300 }, { 500, 776, 24, 24 }, Qt::LeftToRight, { 500, 476, 200, 300 } },
        AnchorCase { "LongerThanTheScreen", { 200, 5000 }, { 500, 3, 24, 24 }, Qt::LeftToRight, { 500, 30, 200, 770 } },
        AnchorCase {
            "TheRoomierSideOfAPointer", { 200, 600 }, { 500, 500, 0, 0 }, Qt::LeftToRight, { 500, 30, 200, 470 } },
        AnchorCase { "WiderThanTheScreen", { 1200, 50 }, { 500, 3, 24, 24 }, Qt::LeftToRight, { 0, 30, 1000, 50 } }),
    [](const auto& given) { return std::string(given.param.name); });

struct RowCase {
    const char* name;
    QSize menu;
    QRect parent;
    int rowTop;
    Qt::LayoutDirection direction;
    QRect expected;
};

class PlaceBesideRow : public testing::TestWithParam<RowCase> { };

TEST_P(PlaceBesideRow, GivesThePlace)
{
    const RowCase& given = GetParam();
    const QRect row(given.parent.x() + 1, given.rowTop, given.parent.width() - 2, 20);
    EXPECT_EQ(placeBesideRow(given.menu, 1, row, given.parent, kAvailable, 3, given.direction), given.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PlaceBesideRow,
    testing::Values(
        RowCase { "FirstRowIsLevel", { 200, 300 }, { 100, 30, 200, 400 }, 80, Qt::LeftToRight, { 297, 79, 200, 300 } },
        RowCase {
            "FlipsAtTheRightEdge", { 200, 300 }, { 700, 30, 200, 400 }, 80, Qt::LeftToRight, { 503, 79, 200, 300 } },
        RowCase {
            "LeftInRightToLeft", { 200, 300 }, { 700, 30, 200, 400 }, 80, Qt::RightToLeft, { 503, 79, 200, 300 } },
        RowCase {
            "FlipsAtTheLeftEdge", { 200, 300 }, { 100, 30, 200, 400 }, 80, Qt::RightToLeft, { 297, 79, 200, 300 } },
        RowCase {
            "MovesUpAtTheBottom", { 200, 300 }, { 100, 30, 200, 770 }, 700, Qt::LeftToRight, { 297, 500, 200, 300 } },
        RowCase { "NoRoomOnEitherSide", { 600, 300 }, { 300, 30, 500, 400 }, 80, Qt::LeftToRight, { 0, 79, 600, 300 } },
        RowCase {
            "TallerThanTheScreen", { 200, 9000 }, { 100, 30, 200, 400 }, 80, Qt::LeftToRight, { 297, 30, 200, 770 } }),
    [](const auto& given) { return std::string(given.param.name); });

} // namespace
