#include "MenuWorld.h"
#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

using namespace quillbox;

namespace {

using User = PopupUser;

class ItemMenu : public testing::Test {
protected:
    ItemMenu()
    {
        EXPECT_TRUE(world.open());
        world.hover("Papers");
        world.takeLog();
    }
    static QPoint middle(const std::string& title) { return User::rectOf(title).center(); }

    MenuWorld world { { { "top", "alpha, Papers/" }, { "Papers", "@notes, @poem, plain" } } };
};

TEST_F(ItemMenu, OpensByARightClickAndActsOnItsRow)
{
    User::click(middle("notes"), Qt::RightButton);
    EXPECT_EQ(world.takeLog(), "update of notes, open of notes");
    EXPECT_EQ(User::selected(), "Papers/notes/-");
    // The rows behind it neither follow the pointer nor act on a press, which closes it alone.
    const QPoint beside(User::rectOf("poem").left() + 1, middle("poem").y());
    User::moveTo(beside);
    world.rest();
    EXPECT_EQ(User::selected(), "Papers/notes/-");
    User::click(beside);
    EXPECT_EQ(world.takeLog(), "close of notes");
    User::click(middle("poem"), Qt::RightButton);
    User::click("Copy");
    EXPECT_EQ(world.takeLog(),
              "update of poem, open of poem, off the screen, close of poem, close Papers, close top, "
              "chose Copy with 0 popups");
}

TEST_F(ItemMenu, TheRightButtonCanBeDraggedToItsRowAndStillChoosesOtherRows)
{
    User::press(middle("notes"), Qt::RightButton);
    User::moveTo(middle("Open"), Qt::RightButton);
    User::release(middle("Open"), Qt::RightButton);
    EXPECT_TRUE(world.takeLog().ends_with("chose Open with 0 popups"));
    EXPECT_TRUE(world.open());
    User::click(middle("alpha"), Qt::RightButton);
    EXPECT_TRUE(world.takeLog().ends_with("chose alpha with 0 popups"));
}

TEST_F(ItemMenu, OpensByKeysAndEscapeLeavesIt)
{
    User::key(Qt::Key_Right);
    User::key(Qt::Key_Menu);
    EXPECT_EQ(User::selected(), "Papers/notes/Open");
    User::key(Qt::Key_Menu); // Its own rows have no such menu.
    User::key(Qt::Key_Escape);
    User::key(Qt::Key_Down);
    User::key(Qt::Key_F10, {}, Qt::ShiftModifier);
    EXPECT_EQ(User::selected(), "Papers/poem/Open");
    EXPECT_EQ(world.takeLog(), "update of notes, open of notes, close of notes, update of poem, open of poem");
}

TEST_F(ItemMenu, ControlShowsAFileAndMakesNoDifferenceElsewhere)
{
    User::click(middle("notes"), Qt::LeftButton, Qt::ControlModifier);
    EXPECT_TRUE(world.takeLog().ends_with("close top, showed /files/notes"));
    EXPECT_TRUE(world.open());
    User::key(Qt::Key_Down);
    User::key(Qt::Key_Return, {}, Qt::ControlModifier);
    EXPECT_TRUE(world.takeLog().ends_with("chose alpha with 0 popups"));
}

TEST(DragOut, BeginsOutsideTheMenuWhichIsClosedByThen)
{
    const TemporaryDirectory files;
    MenuWorld world { { { "top", "@notes, @gone, alpha" } } };
    world.directory = files.path();
    std::vector<std::string> dragged;
    world.presenter.runDrag = [&](const FileDrag& drag) {
        EXPECT_TRUE(User::popups().empty());
        EXPECT_FALSE(drag.picture.isNull());
        dragged.push_back(drag.path);
    };
    const QPoint outside(700, 700);
    const auto drag = [&](const std::string& from) {
        world.open();
        User::moveTo(from);
        User::press(User::rectOf(from).center());
        // Within the menu, the pointer goes from row to row as in every menu.
        User::moveTo(User::rectOf("alpha").center(), Qt::LeftButton);
        User::moveTo(outside, Qt::LeftButton);
    };
    const std::string file = files.writeFile("notes");
    drag("notes");
    EXPECT_EQ(dragged, std::vector { file });
    for (const char* other : { "alpha", "gone" }) {
        drag(other);
        EXPECT_TRUE(world.presenter.isOpen()) << other;
        User::release(outside);
    }
    EXPECT_EQ(dragged.size(), 1U);
}

} // namespace
