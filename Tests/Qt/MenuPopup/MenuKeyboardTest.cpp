#include "MenuWorld.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeySequence>

using namespace quillbox;

namespace {

using User = PopupUser;

class MenuByKeyboard : public testing::Test {
protected:
    MenuByKeyboard()
    {
        EXPECT_TRUE(world.open());
        world.takeLog();
    }
    ~MenuByKeyboard() override { QApplication::setLayoutDirection(Qt::LeftToRight); }

    MenuWorld world { { { "top", "(title), alpha, -, Papers/, Recent//, (end)" },
                        { "Papers", "(title), one, two/" },
                        { "Recent", "r*500" },
                        { "two", "(Empty Directory)" } } };
};

TEST_F(MenuByKeyboard, Walks)
{
    // Each key and what is highlighted afterwards.
    const struct {
        const char* name;
        const char* steps;
    } cases[] = {
        { "Down goes round over enabled rows", "Down=alpha Down=Papers Down=Recent Down=alpha Up=Recent" },
        { "Up begins at the end", "Up=Recent Home=alpha End=Recent" },
        { "Right opens", "End=Recent Up=Papers Right=Papers/one Right=Papers/one Down=Papers/two Right=Papers/two/-" },
        { "Left closes", "Home=alpha Down=Papers Right=Papers/one Left=Papers Left=Papers" },
        { "Escape closes one level", "Up=Recent Return=Recent/r0 Esc=Recent Esc=" },
        { "pages keep to the ends", "Up=Recent Return=Recent/r0 PgUp=Recent/r0 End=Recent/r499 PgDown=Recent/r499" },
        { "long lists scroll", "Up=Recent Return=Recent/r0 Up=Recent/r499 Down=Recent/r0 End=Recent/r499" },
    };
    for (const auto& given : cases) {
        world.open();
        for (const QString& step : QString(given.steps).split(' ')) {
            User::key(QKeySequence::fromString(step.section('=', 0, 0))[0].key());
            EXPECT_EQ(User::selected(), step.section('=', 1).toStdString()) << given.name;
        }
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
}

TEST_F(MenuByKeyboard, TheKeysGoOnFromWhereThePointerIs)
{
    world.hover("Papers");
    EXPECT_EQ(User::selected(), "Papers/-");
    User::key(Qt::Key_Right);
    EXPECT_EQ(User::selected(), "Papers/one");
    User::moveTo("Recent");
    User::key(Qt::Key_Up);
    // What the pointer was about to open stays shut.
    world.rest();
    EXPECT_EQ(User::selected(), "Papers");
}

TEST(MenuTyping, FindsRowsByTheirBeginning)
{
    MenuWorld world { { { "top", "(missing), Music, Maps, new notes, News, my file, Élan" } } };
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
