#include "MenuWorld.h"

#include <gtest/gtest.h>

using namespace quillbox;

namespace {

using User = PopupUser;

class MenuByPointer : public testing::Test {
protected:
    MenuByPointer()
    {
        EXPECT_TRUE(world.open());
        EXPECT_EQ(world.takeLog(), "update top, open top");
    }

    void hoverPapers()
    {
        world.hover("Papers");
        ASSERT_EQ(world.takeLog(), "update Papers, open Papers");
    }

    MenuWorld world { { { "top", "alpha, Papers/, Photos/, Recent//, -, (disabled)" },
                        { "Papers", "one, two, three" },
                        { "Photos", "p*30" },
                        { "Recent", "latest" } } };
};

TEST_F(MenuByPointer, ASubmenuOpensAfterAPauseOnItsRow)
{
    User::moveTo("Papers");
    world.wait(100);
    User::moveTo("Photos");
    world.wait(180);
    EXPECT_EQ(world.takeLog(), "");
    world.wait(200);
    EXPECT_EQ(world.takeLog(), "update Photos, open Photos");
    EXPECT_EQ(User::selected(), "Photos/-");
}

TEST_F(MenuByPointer, TheSlantingWayIntoASubmenuCrossesOtherRows)
{
    hoverPapers();
    const QPoint from = User::rectOf("Papers").center();
    const QPoint to = User::rectOf("three").center();
    ASSERT_GT(to.y(), User::rectOf("Photos").top());
    for (int step = 1; step <= 20; ++step) {
        // A hand goes in small steps, some of them straight down.
        const QPoint next = from + (to - from) * step / 20;
        User::moveTo(QPoint(from.x() + (to - from).x() * (step - 1) / 20, next.y()));
        User::moveTo(next);
        world.wait(30);
    }
    EXPECT_EQ(world.takeLog(), "");
    EXPECT_EQ(User::selected(), "Papers/three");
}

TEST_F(MenuByPointer, StoppingOnThatWayMeansTheRowThereAndStraightDownIsNoSuchWay)
{
    hoverPapers();
    const QRect photos = User::rectOf("Photos");
    User::moveTo(QPoint(photos.right() - 30, photos.top() + 2));
    EXPECT_EQ(User::selected(), "Papers/-");
    world.rest();
    EXPECT_EQ(world.takeLog(), "close Papers, update Photos, open Photos");
    EXPECT_EQ(User::selected(), "Photos/-");
    User::moveTo("Recent");
    EXPECT_EQ(User::selected(), "Recent/-");
}

TEST_F(MenuByPointer, ClicksDoWhatTheRowIsFor)
{
    const struct {
        const char* title;
        const char* log;
    } cases[] = {
        { "disabled", "" },
        { "Recent", "update Recent, open Recent" },
        // Already open.
        { "Recent", "" },
        { "Papers", "off the screen, close Recent, close top, chose Papers with 0 popups" },
    };
    for (const auto& given : cases) {
        User::click(given.title);
        EXPECT_EQ(world.takeLog(), given.log) << given.title;
    }
    EXPECT_FALSE(world.presenter.isOpen());
    EXPECT_EQ(world.clock.pendingCount(), 0u);
}

TEST_F(MenuByPointer, AnActionMayShowAnAlertOrTheMenuAgain)
{
    world.duringAction = [this] {
        world.desktop.duringAlert = [this] { EXPECT_FALSE(world.open()); };
        NSAlert alert;
        alert.runModal();
        EXPECT_TRUE(world.open());
    };
    User::click("alpha");
    EXPECT_EQ(world.desktop.alerts.size(), 1u);
    EXPECT_EQ(User::popups().size(), 1u);
}

TEST_F(MenuByPointer, AClickOutsideClosesAllAndTheIconsOwnOpensNothing)
{
    hoverPapers();
    User::click(QPoint(700, 700));
    EXPECT_EQ(world.takeLog(), "off the screen, close Papers, close top");
    EXPECT_TRUE(world.open());

    User::click(MenuWorld::kAnchor.center());
    EXPECT_FALSE(world.presenter.isOpen());
    world.wait(100);
    EXPECT_FALSE(world.open());
    EXPECT_FALSE(world.presenter.popUp(world.top, QRect(MenuWorld::kAnchor.center() + QPoint(5, 5), QSize()), nullptr));
    EXPECT_TRUE(world.presenter.popUp(world.top, QRect(600, 0, 24, 24), nullptr));
    world.presenter.close();
    world.wait(1000);
    EXPECT_TRUE(world.open());
}

TEST_F(MenuByPointer, ThePressThatOpenedTheMenuCanBeDraggedToARow)
{
    const QPoint start = MenuWorld::kAnchor.center();
    User::release(start);
    EXPECT_EQ(world.takeLog(), "");
    User::moveTo(start + QPoint(1, 1), Qt::LeftButton);
    User::moveTo(User::rectOf("Papers").center(), Qt::LeftButton);
    world.rest();
    User::moveTo(User::rectOf("two").center(), Qt::LeftButton);
    User::release(User::rectOf("two").center());
    EXPECT_EQ(world.takeLog(),
              "update Papers, open Papers, off the screen, close Papers, close top, "
              "chose two with 0 popups");
}

TEST_F(MenuByPointer, TheDisplayMayTakeAPopupAway)
{
    hoverPapers();
    User::popups()[0]->hide();
    EXPECT_EQ(world.takeLog(), "off the screen, close Papers, close top");
    EXPECT_TRUE(User::popups().empty());
}

} // namespace
