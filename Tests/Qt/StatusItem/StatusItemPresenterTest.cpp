#include "StatusItemPresenter.h"

#include "MenuHost.h"
#include "MenuWorld.h"
#include "PrivateBus.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QWidget>

using namespace quillbox;
using namespace std::chrono_literals;

namespace {

const char kOpenedAndClosed[] = "update top, open top, close top";

class StatusItemPresenterTest : public testing::Test {
protected:
    StatusItemPresenterTest()
    {
        // What is pending later is the presenter's own.
        world.presenter.warmUp();
        world.rest();
        item.setMenu(world.top);
        letDraw(MenuDrawing::byUs);
    }

    void letDraw(MenuDrawing drawing)
    {
        presenter.reset();
        presenter = std::make_unique<StatusItemPresenter>(item, world.presenter, shortMenu, drawing);
    }

    static QWidget* strip()
    {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible() && window->windowTitle() == QLatin1String("Quillbox"))
                return window;
        return nullptr;
    }

    void clickStrip()
    {
        world.clock.advance(3s);
        ASSERT_TRUE(strip());
        strip()->findChild<QAbstractButton*>()->click();
    }

    // What a host does when its icon is clicked; waits until a menu is open, or none is.
    void click(const FakeStatusBar& statusBar, bool opens = true, const QString& method = "Activate")
    {
        ASSERT_TRUE(waitUntilShown());
        host.call(statusBar.registeredItems.value(0), "/StatusNotifierItem", "org.kde.StatusNotifierItem", method,
                  { 30, 20 });
        EXPECT_TRUE(waitUntil([&] { return world.presenter.isOpen() == opens; }));
    }

    bool waitUntilShown()
    {
        return waitUntil([&] { return world.clock.pendingCount() == 0; });
    }

    PrivateBus bus;
    BusClient host;
    MenuWorld world { { { "top", "row" }, { "short", "row" } } };
    std::shared_ptr<NSMenu> shortMenu = world.menu("short");
    NSStatusItem item { NSStatusItem::variableLength };
    std::unique_ptr<StatusItemPresenter> presenter;
};

TEST_F(StatusItemPresenterTest, TheStripShowsOnlyWhereNoHostHasBeenForAWhile)
{
    world.clock.advance(2900ms);
    EXPECT_FALSE(strip());
    world.clock.advance(100ms);
    EXPECT_TRUE(strip());
    {
        const FakeStatusBar statusBar;
        EXPECT_TRUE(waitUntil([&] { return !strip(); }));
        EXPECT_EQ(world.clock.pendingCount(), 0U);
    }
    ASSERT_TRUE(waitUntil([&] { return world.clock.pendingCount() == 1; }));
    world.clock.advance(2900ms);
    EXPECT_FALSE(strip());
    {
        // A panel that restarts in time.
        const FakeStatusBar statusBar;
        EXPECT_TRUE(waitUntil([&] { return world.clock.pendingCount() == 0; }));
    }
    presenter.reset();
    EXPECT_FALSE(strip());
}

TEST_F(StatusItemPresenterTest, TheIconComesBackWithTheBus)
{
    auto statusBar = std::make_unique<FakeStatusBar>();
    ASSERT_TRUE(waitUntil([&] { return statusBar->registeredItems.size() == 1; }));
    statusBar.reset();
    bus.stop();
    bus.start();
    const FakeStatusBar restarted;
    EXPECT_TRUE(waitUntil([&] { return restarted.registeredItems.size() == 1; }));
}

TEST_F(StatusItemPresenterTest, AClickOnTheIconOpensTheMenuAndTheNextOneClosesIt)
{
    const FakeStatusBar statusBar;
    click(statusBar);
    click(statusBar, false);
    EXPECT_EQ(world.takeLog(), kOpenedAndClosed);
    // What a host without menus asks for.
    click(statusBar, true, "ContextMenu");
    EXPECT_EQ(world.takeLog(), "update short, open short");
    world.presenter.close();
    world.contents["top"].clear();
    presenter->openMenu();
    EXPECT_EQ(PopupUser::popups().at(0)->menu(), shortMenu);
}

TEST_F(StatusItemPresenterTest, AMenuGoesWithTheIconThatOpenedIt)
{
    auto statusBar = std::make_unique<FakeStatusBar>();
    click(*statusBar);
    statusBar.reset();
    EXPECT_TRUE(waitUntil([&] { return !world.presenter.isOpen(); }));
    clickStrip();
    ASSERT_TRUE(world.presenter.isOpen());
    statusBar = std::make_unique<FakeStatusBar>();
    EXPECT_TRUE(waitUntil([&] { return !strip(); }));
    EXPECT_FALSE(world.presenter.isOpen());
}

TEST_F(StatusItemPresenterTest, AClickWhileAnAlertRunsBringsTheAlertForward)
{
    const FakeStatusBar statusBar;
    world.desktop.duringAlert = [&] {
        click(statusBar, false);
        EXPECT_TRUE(waitUntil([&] { return world.desktop.activations > 0; }));
    };
    NSAlert().runModal();
    EXPECT_EQ(world.desktop.activations, 1);
    EXPECT_EQ(world.takeLog(), "");
}

TEST_F(StatusItemPresenterTest, AHostThatDrawsTheMenuFindsItFilledAndOpensItAlone)
{
    letDraw(MenuDrawing::byHost);
    auto statusBar = std::make_unique<FakeStatusBar>();
    // Of the icon before this one too.
    ASSERT_TRUE(waitUntil([&] { return world.log.size() == 3; }));
    EXPECT_EQ(world.takeLog(), kOpenedAndClosed);

    MenuHost panel(statusBar->registeredItems.value(0), "/StatusNotifierItem/Menu");
    EXPECT_EQ(panel.layout(0, -1), "1 row");
    panel.tell(0, "opened");
    // The panel goes, and with it the menu that it shows; the strip shows it in our way.
    statusBar.reset();
    ASSERT_TRUE(waitUntil([&] { return world.log.size() == 3; }));
    EXPECT_EQ(world.takeLog(), kOpenedAndClosed);
    clickStrip();
    EXPECT_EQ(world.takeLog(), "update top, open top");
    const FakeStatusBar next;
    ASSERT_TRUE(waitUntil([&] { return world.log.size() == 4; }));
    EXPECT_EQ(world.takeLog(), std::string("close top, ") + kOpenedAndClosed);
    EXPECT_FALSE(world.presenter.isOpen());
}

TEST_F(StatusItemPresenterTest, AHostThatAsksDuringAnAlertIsToldOnceTheMenuIsThere)
{
    letDraw(MenuDrawing::byHost);
    std::unique_ptr<FakeStatusBar> statusBar;
    std::unique_ptr<MenuHost> panel;
    world.desktop.duringAlert = [&] {
        statusBar = std::make_unique<FakeStatusBar>();
        ASSERT_TRUE(waitUntilShown());
        panel = std::make_unique<MenuHost>(statusBar->registeredItems.value(0), "/StatusNotifierItem/Menu");
        EXPECT_EQ(panel->layout(0, -1), "");
    };
    NSAlert().runModal();
    presenter->alertHasEnded();
    QStringList updates;
    EXPECT_TRUE(waitUntil([&] { return !(updates += panel->takeUpdates()).isEmpty(); }));
    EXPECT_EQ(updates, QStringList { "r2 below 0" });
    EXPECT_EQ(panel->layout(0, -1), "1 row");
}

TEST_F(StatusItemPresenterTest, AHostsFirstQuestionClosesNoMenu)
{
    const FakeStatusBar statusBar;
    click(statusBar);
    MenuHost panel(statusBar.registeredItems.value(0), "/StatusNotifierItem/Menu");
    panel.layout(0, -1);
    EXPECT_TRUE(world.presenter.isOpen());
    world.presenter.close();
    QStringList updates;
    EXPECT_TRUE(waitUntil([&] { return !(updates += panel.takeUpdates()).isEmpty(); }));
    EXPECT_EQ(panel.layout(0, -1), "1 row");
}

TEST_F(StatusItemPresenterTest, AKeyOpensTheMenuOnceThereIsAnIcon)
{
    for (const MenuDrawing drawing : { MenuDrawing::byUs, MenuDrawing::byHost }) {
        for (const bool isOnStrip : { false, true }) {
            letDraw(drawing);
            presenter->openMenuByKeyboard();
            EXPECT_FALSE(world.presenter.isOpen());
            std::unique_ptr<FakeStatusBar> statusBar;
            if (isOnStrip)
                world.clock.advance(3s);
            else
                statusBar = std::make_unique<FakeStatusBar>();
            ASSERT_TRUE(waitUntil([&] { return world.presenter.isOpen(); })) << isOnStrip;
            EXPECT_EQ(PopupUser::selected(), "row");
            presenter->openMenuByKeyboard();
            EXPECT_TRUE(world.presenter.isOpen());
            world.presenter.close();
        }
    }
}

TEST(MenuDrawing, FollowsFromTheSessionAlone)
{
    const struct {
        const char* platform;
        const char* sessionType;
        const char* desktops;
        MenuDrawing drawing;
    } cases[] = {
        { "xcb", "x11", "ubuntu:GNOME", MenuDrawing::byHost },
        { "xcb", "x11", "GNOME-Flashback:Unity", MenuDrawing::byUs },
        { "wayland", "wayland", "KDE", MenuDrawing::byHost },
        { "xcb", "wayland", "KDE", MenuDrawing::byHost },
        { "wayland-egl", "", "", MenuDrawing::byHost },
    };
    for (const auto& test : cases)
        EXPECT_EQ(menuDrawing(test.platform, test.sessionType, test.desktops), test.drawing)
            << test.platform << ' ' << test.sessionType << ' ' << test.desktops;
    EXPECT_TRUE(opensMenuUnlessActivated("KDE"));
    EXPECT_FALSE(opensMenuUnlessActivated("LXQt"));
}

} // namespace
