#include "MenuWorld.h"

#include <gtest/gtest.h>

#include <QApplication>

#include <vector>

using namespace quillbox;

namespace {

using User = PopupUser;

struct Step {
    int key;
    const char* selected;
};

struct KeyCase {
    const char* name;
    std::vector<Step> steps;
};

class MenuByKeyboard : public testing::TestWithParam<KeyCase> {
protected:
    MenuByKeyboard()
    {
        world.contents["top"] = [this] {
            return MenuWorld::Rows { std::make_shared<NSMenuItem>("title"),
                                     world.file("alpha"),
                                     NSMenuItem::separatorItem(),
                                     world.directory("Papers"),
                                     world.heading("Recent"),
                                     std::make_shared<NSMenuItem>("end") };
        };
        world.contents["Papers"] = [this] {
            return MenuWorld::Rows { std::make_shared<NSMenuItem>("title"), world.file("one"), world.directory("two") };
        };
        world.contents["Recent"] = [this] { return world.numbered("r", 500); };
        world.contents["two"] = [] { return MenuWorld::Rows { std::make_shared<NSMenuItem>("Empty Directory") }; };
        EXPECT_TRUE(world.open());
        world.takeLog();
    }
    ~MenuByKeyboard() override { QApplication::setLayoutDirection(Qt::LeftToRight); }

    MenuWorld world;
};

TEST_P(MenuByKeyboard, Walks)
{
    for (const Step& step : GetParam().steps) {
        User::key(step.key);
        EXPECT_EQ(User::selected(), step.selected);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Keys, MenuByKeyboard,
    testing::Values(KeyCase { "DownGoesRoundOverEnabledRows",
                              { { Qt::Key_Down, "alpha" },
                                { Qt::Key_Down, "Papers" },
                                { Qt::Key_Down, "Recent" },
                                { Qt::Key_Down, "alpha" },
                                { Qt::Key_Up, "Recent" } } },
                    KeyCase { "UpBeginsAtTheEnd",
                              { { Qt::Key_Up, "Recent" }, { Qt::Key_Home, "alpha" }, { Qt::Key_End, "Recent" } } },
                    KeyCase { "RightOpensLeftCloses",
                              { { Qt::Key_End, "Recent" },
                                { Qt::Key_Up, "Papers" },
                                { Qt::Key_Right, "Papers/one" },
                                { Qt::Key_Right, "Papers/one" },
                                { Qt::Key_Down, "Papers/two" },
                                { Qt::Key_Right, "Papers/two/-" },
                                { Qt::Key_Left, "Papers/two" },
                                { Qt::Key_Left, "Papers" },
                                { Qt::Key_Left, "Papers" } } },
                    KeyCase { "EscapeClosesOneLevel",
                              { { Qt::Key_Up, "Recent" },
                                { Qt::Key_Return, "Recent/r0" },
                                { Qt::Key_Escape, "Recent" },
                                { Qt::Key_Escape, "" } } },
                    KeyCase { "LongListsScrollToTheSelection",
                              { { Qt::Key_Up, "Recent" },
                                { Qt::Key_Return, "Recent/r0" },
                                { Qt::Key_Up, "Recent/r499" },
                                { Qt::Key_Down, "Recent/r0" },
                                { Qt::Key_End, "Recent/r499" },
                                { Qt::Key_PageDown, "Recent/r499" },
                                { Qt::Key_Home, "Recent/r0" },
                                { Qt::Key_PageUp, "Recent/r0" } } }),
    [](const auto& given) { return std::string(given.param.name); });

TEST_F(MenuByKeyboard, ReturnSendsTheActionOfADirectory)
{
    User::key(Qt::Key_Down);
    User::key(Qt::Key_Down);
    User::key(Qt::Key_Right);
    User::key(Qt::Key_End);
    User::key(Qt::Key_Return);
    EXPECT_EQ(world.takeLog(),
              "update Papers, open Papers, off the screen, close Papers, close top, "
              "chose two with 0 popups");
}

TEST_F(MenuByKeyboard, ASelectionMovedByAPageStaysInSight)
{
    User::key(Qt::Key_End);
    User::key(Qt::Key_Right);
    MenuPopup& popup = *User::popups()[1];
    const std::size_t inSight = popup.rows().visibleRows().size();
    for (int page = 1; page < 4; ++page) {
        const std::size_t before = popup.selection().value();
        User::key(Qt::Key_PageDown);
        EXPECT_GT(popup.selection().value(), before + inSight / 2);
        EXPECT_LE(popup.selection().value(), before + inSight);
        EXPECT_EQ(popup.rowRect(*popup.selection()).height(), popup.ordinaryRowHeight());
    }
}

TEST_F(MenuByKeyboard, RightToLeftSwapsTheSides)
{
    world.presenter.close();
    QApplication::setLayoutDirection(Qt::RightToLeft);
    ASSERT_TRUE(world.open());
    EXPECT_EQ(User::popups()[0]->geometry().right(), MenuWorld::kAnchor.right());
    User::type("p");
    User::key(Qt::Key_Left);
    EXPECT_EQ(User::selected(), "Papers/one");
    EXPECT_LT(User::popups()[1]->x(), User::popups()[0]->x());
    User::key(Qt::Key_Right);
    EXPECT_EQ(User::selected(), "Papers");
}

TEST_F(MenuByKeyboard, TheKeysGoOnFromWhereThePointerIs)
{
    User::moveTo("Papers");
    world.rest();
    EXPECT_EQ(User::selected(), "Papers/-");
    User::key(Qt::Key_Right);
    EXPECT_EQ(User::selected(), "Papers/one");
    User::moveTo("Recent");
    User::key(Qt::Key_Up);
    EXPECT_EQ(User::selected(), "Papers");
    // What the pointer was about to open stays shut.
    world.rest();
    EXPECT_EQ(User::selected(), "Papers");
}

TEST(MenuTyping, FindsRowsByTheirBeginning)
{
    MenuWorld world;
    world.contents["top"] = [&] {
        MenuWorld::Rows rows = world.files({ "Music", "Maps", "new notes", "News", "my file", "Élan" });
        rows.insert(rows.begin(), std::make_shared<NSMenuItem>("missing"));
        return rows;
    };
    world.open();
    const struct {
        const char* typed;
        int pauseBefore;
        const char* selected;
    } cases[] = {
        { "m", 0, "Music" },          { "y", 0, "my file" }, { " f", 0, "my file" },  { "mm", 2000, "Maps" },
        { "new", 2000, "new notes" }, { "s", 0, "News" },    { "zzz", 2000, "News" }, { "e", 2000, "Élan" },
    };
    for (const auto& given : cases) {
        world.wait(given.pauseBefore);
        User::type(QString::fromUtf8(given.typed));
        EXPECT_EQ(User::selected(), given.selected) << given.typed;
    }
    world.rest();
    EXPECT_EQ(world.clock.pendingCount(), 0u);
    User::key(Qt::Key_Space, " ");
    EXPECT_EQ(world.takeLog(), "update top, open top, off the screen, close top, chose Élan with 0 popups");
}

} // namespace
