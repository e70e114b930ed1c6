#include "CountedSource.h"
#include "ImageRenderer.h"
#include "MenuWorld.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QProxyStyle>
#include <QScreen>
#include <QStyleFactory>
#include <QStyleOptionMenuItem>
#include <QToolTip>
#include <QWindow>

#include <utility>

using namespace quillbox;

namespace {

using User = PopupUser;

TEST(MenuPopup, AHugeListTouchesOnlyTheRowsInSight)
{
    ImageRenderer::dropAll();
    CountedSource::asked = 0;
    const int& asked = CountedSource::asked;
    MenuWorld world { { { "top", "file*100000" } } };
    world.afterUpdate = [](NSMenu& menu) {
        for (const auto& row : menu.itemArray())
            row->setImage(NSImage(std::make_shared<CountedSource>(), { 16, 16 }));
    };
    ASSERT_TRUE(world.open());
    MenuPopup& popup = *User::popups()[0];
    EXPECT_EQ(asked, 0);
    popup.grab();
    const auto inSight = static_cast<int>(popup.rows().visibleRows().size());
    EXPECT_GT(inSight, 10);
    EXPECT_EQ(asked, inSight);
    User::moveTo("file3");
    popup.grab();
    EXPECT_EQ(asked, inSight);

    User::key(Qt::Key_End);
    popup.grab();
    EXPECT_LE(asked, 2 * inSight + 2);
    EXPECT_EQ(User::selected(), "file99999");
}

TEST(MenuPopup, LongTitlesAreCutAndTheirTipsSayThemWhole)
{
    const std::string longTitle = std::string(300, 'w') + "<b>end</b>";
    MenuWorld world { { { "top", longTitle + ", with path, plain" } } };
    world.afterUpdate = [](NSMenu& menu) { menu.itemArray()[1]->setToolTip("/home/<i>a</i>/b"); };
    world.open();
    MenuPopup& popup = *User::popups()[0];
    EXPECT_LE(popup.width(), popup.screen()->availableGeometry().width() * 2 / 5);
    User::moveTo("with path");
    EXPECT_EQ(QToolTip::text(), "");
    world.rest();
    EXPECT_TRUE(QToolTip::isVisible());
    EXPECT_TRUE(QToolTip::text().contains("&lt;i&gt;a")) << QToolTip::text().toStdString();
    world.hover("plain");
    world.hover(longTitle);
    EXPECT_TRUE(QToolTip::text().contains("&lt;b&gt;end")) << QToolTip::text().toStdString();
}

TEST(MenuPopup, ScrollsByWheelAndAtItsEdges)
{
    MenuWorld world { { { "top", "sub/, f*500" }, { "sub", "x" } } };
    world.open();
    world.hover("sub");
    User::wheel(User::rectOf("sub").center(), 2);
    EXPECT_EQ(User::selected(), "f5");
    User::wheel(User::rectOf("f5").center(), -100);
    EXPECT_EQ(User::selected(), "sub");

    const QRect popup = User::popups()[0]->geometry();
    const auto firstInSight = [] { return User::popups()[0]->rows().visibleRows().front().row; };
    User::moveTo(QPoint(popup.center().x(), popup.bottom() - 2));
    EXPECT_EQ(User::selected(), "-");
    for (int i = 0; i < 50; ++i) {
        User::moveTo(QPoint(popup.center().x() + i % 2, popup.bottom() - 2));
        world.wait(20);
    }
    const std::size_t afterASecond = firstInSight();
    EXPECT_GT(afterASecond, 10u);
    world.wait(1000);
    // The longer, the faster; the end of the list stops it.
    EXPECT_GT(firstInSight(), 2 * afterASecond + 5);
    world.wait(60'000);
    EXPECT_FALSE(User::popups()[0]->rows().canScrollDown());
    EXPECT_EQ(world.clock.pendingCount(), 0u);
}

TEST(MenuPopup, AnEmptyMenuGivesItsPlaceToTheReserveAndAnEmptySubmenuShowsNothing)
{
    MenuWorld world;
    const auto empty = std::make_shared<NSMenu>("nothing");
    const auto reserve = std::make_shared<NSMenu>("reserve");
    EXPECT_FALSE(world.presenter.popUp(empty, MenuWorld::kAnchor, reserve));
    reserve->setItemArray(world.rows("Quit, empty/"));
    EXPECT_TRUE(world.presenter.popUp(empty, MenuWorld::kAnchor, reserve));
    world.hover("empty");
    EXPECT_EQ(User::popups().size(), 1u);
    User::click("Quit");
    EXPECT_EQ(world.takeLog(), "update empty, open empty, close empty, off the screen, chose Quit with 0 popups");
}

TEST(MenuPopup, BelongsToTheWindowOrTheMenuThatItOpensFrom)
{
    QWidget strip;
    strip.winId();
    MenuWorld world { { { "top", "sub/" }, { "sub", "below" } } };
    ASSERT_TRUE(world.presenter.popUp(world.top, MenuWorld::kAnchor, nullptr, strip.windowHandle()));
    world.hover("sub");
    ASSERT_EQ(User::popups().size(), 2u);
    QWindow* const top = User::popups()[0]->windowHandle();
    EXPECT_EQ(top->transientParent(), strip.windowHandle());
    EXPECT_EQ(User::popups()[1]->windowHandle()->transientParent(), top);
}

// Draws as usual and writes down the titles, those of highlighted rows with a star.
class NotingStyle final : public QProxyStyle {
public:
    explicit NotingStyle(QStringList& titles) : QProxyStyle(QStyleFactory::create("Fusion")), titles_(titles) { }
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override
    {
        if (const auto* row = qstyleoption_cast<const QStyleOptionMenuItem*>(option))
            titles_.append(row->text + (row->state & State_Selected ? "*" : ""));
        QProxyStyle::drawControl(element, option, painter, widget);
    }

private:
    QStringList& titles_;
};

TEST(MenuPopup, PaintsTheHighlightOnTheSelectedRowAlone)
{
    MenuWorld world { { { "top", "one, two, (note)" } } };
    world.afterUpdate = [](NSMenu& menu) {
        menu.itemArray()[2]->setAttributedTitle(AttributedString("first line\nsecond line"));
    };
    QStringList drawn;
    QApplication::setStyle(new NotingStyle(drawn));
    world.open();
    MenuPopup& popup = *User::popups()[0];
    User::moveTo("two");
    popup.grab();
    EXPECT_EQ(std::exchange(drawn, {}), (QStringList { "one", "two*", "", "first line", "second line" }));
    User::moveTo(popup.rowRect(2).center());
    popup.grab();
    EXPECT_EQ(drawn, (QStringList { "one", "two", "", "first line", "second line" }));
    QApplication::setStyle(QStyleFactory::create("Fusion"));
}

} // namespace
