#include "CountedSource.h"
#include "ImageRenderer.h"
#include "MenuWorld.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPixmap>
#include <QProxyStyle>
#include <QScreen>
#include <QStyleFactory>
#include <QStyleOptionMenuItem>
#include <QToolTip>
#include <QWindow>

using namespace quillbox;

namespace {

using User = PopupUser;

TEST(MenuPopup, AHugeListTouchesOnlyTheRowsInSight)
{
    ImageRenderer::dropAll();
    CountedSource::asked = 0;
    const int& asked = CountedSource::asked;
    MenuWorld world;
    world.contents["top"] = [&] {
        MenuWorld::Rows rows = world.numbered("file", 100'000);
        for (const auto& row : rows)
            row->setImage(NSImage(std::make_shared<CountedSource>(), { 16, 16 }));
        return rows;
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
    MenuWorld world;
    const std::string longTitle = std::string(300, 'w') + "<b>end</b>";
    world.contents["top"] = [&] {
        MenuWorld::Rows rows = world.files({ longTitle, "with path", "plain" });
        rows[1]->setToolTip("/home/<i>a</i>/b");
        return rows;
    };
    world.open();
    MenuPopup& popup = *User::popups()[0];
    EXPECT_LE(popup.width(), popup.screen()->availableGeometry().width() * 2 / 5);
    User::moveTo("with path");
    EXPECT_EQ(QToolTip::text(), "");
    world.rest();
    EXPECT_TRUE(QToolTip::isVisible());
    EXPECT_TRUE(QToolTip::text().contains("&lt;i&gt;a")) << QToolTip::text().toStdString();
    User::moveTo("plain");
    world.rest();
    User::moveTo(longTitle);
    world.rest();
    EXPECT_TRUE(QToolTip::text().contains("&lt;b&gt;end")) << QToolTip::text().toStdString();
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

// What is drawn while it lives.
class Drawn {
public:
    Drawn() { QApplication::setStyle(new NotingStyle(titles_)); }
    ~Drawn() { QApplication::setStyle(QStyleFactory::create("Fusion")); }
    QStringList by(MenuPopup& popup)
    {
        titles_.clear();
        popup.grab();
        return titles_;
    }

private:
    QStringList titles_;
};

TEST(MenuPopup, ATitleThatHasRoomIsNotCut)
{
    Drawn drawn;
    const QFont former = QApplication::font("QMenu");
    for (const char* title : { "Quillbox Preferences...", "System Settings", "Applications", "Illiterate file.txt" })
        for (double size = 7; size < 16; size += 0.7)
            for (const auto hinting : { QFont::PreferNoHinting, QFont::PreferFullHinting }) {
                QFont font = former;
                font.setPointSizeF(size);
                font.setHintingPreference(hinting);
                QApplication::setFont(font, "QMenu");
                MenuWorld world;
                world.contents["top"] = [&] { return world.files({ title, "one" }); };
                world.open();
                MenuPopup& popup = *User::popups()[0];
                const QString shown = drawn.by(popup).first();
                const bool hasRoom = popup.width() < popup.screen()->availableGeometry().width() * 2 / 5;
                EXPECT_TRUE(shown == title || !hasRoom) << shown.toStdString() << ' ' << size;
            }
    QApplication::setFont(former, "QMenu");
}

TEST(MenuPopup, ScrollsByWheelAndAtItsEdges)
{
    MenuWorld world;
    world.contents["top"] = [&] {
        MenuWorld::Rows rows = world.numbered("f", 500);
        rows[0] = world.directory("sub");
        return rows;
    };
    world.contents["sub"] = [&] { return world.files({ "x" }); };
    world.open();
    User::moveTo("sub");
    world.rest();
    User::wheel(User::rectOf("sub").center(), 2);
    EXPECT_EQ(User::selected(), "f6");
    User::wheel(User::rectOf("f6").center(), -100);
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
    reserve->addItem(world.file("Quit"));
    reserve->addItem(world.directory("empty"));
    EXPECT_TRUE(world.presenter.popUp(empty, MenuWorld::kAnchor, reserve));
    User::moveTo("empty");
    world.rest();
    EXPECT_EQ(User::popups().size(), 1u);
    User::click("Quit");
    EXPECT_EQ(world.takeLog(), "update empty, open empty, close empty, off the screen, chose Quit with 0 popups");
}

TEST(MenuPopup, BelongsToTheWindowOrTheMenuThatItOpensFrom)
{
    QWidget strip;
    strip.winId();
    MenuWorld world;
    world.contents["sub"] = [&] { return world.files({ "below" }); };
    world.contents["top"] = [&] { return MenuWorld::Rows { world.directory("sub") }; };
    ASSERT_TRUE(world.presenter.popUp(world.top, MenuWorld::kAnchor, nullptr, strip.windowHandle()));
    User::moveTo("sub");
    world.rest();
    ASSERT_EQ(User::popups().size(), 2u);
    QWindow* const top = User::popups()[0]->windowHandle();
    EXPECT_EQ(top->transientParent(), strip.windowHandle());
    EXPECT_EQ(User::popups()[1]->windowHandle()->transientParent(), top);
}

TEST(MenuPopup, PaintsTheHighlightOnTheSelectedRowAlone)
{
    Drawn drawn;
    MenuWorld world;
    world.contents["top"] = [&] {
        MenuWorld::Rows rows = world.files({ "one", "two" });
        rows.push_back(std::make_shared<NSMenuItem>());
        rows[2]->setAttributedTitle(AttributedString("first line\nsecond line"));
        return rows;
    };
    world.open();
    MenuPopup& popup = *User::popups()[0];
    User::moveTo("two");
    EXPECT_EQ(drawn.by(popup), (QStringList { "one", "two*", "", "first line", "second line" }));
    User::moveTo(popup.rowRect(2).center());
    EXPECT_EQ(drawn.by(popup), (QStringList { "one", "two", "", "first line", "second line" }));
}

} // namespace
