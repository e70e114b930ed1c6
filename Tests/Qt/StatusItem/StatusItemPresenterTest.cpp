#include "StatusItemPresenter.h"

#include "HeadlessDesktop.h"
#include "ManualClock.h"
#include "MenuHost.h"
#include "MenuPresenter.h"
#include "PrivateBus.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QWidget>

using namespace quillbox;
using namespace std::chrono_literals;

namespace {

const Selector kNothing { "nothing:", [](NSObject&, NSObject*) {} };

// Writes down when its menus open and close.
class MenuLog final : public NSMenuDelegate {
public:
    void menuNeedsUpdate(NSMenu&) override { }
    void menuWillOpen(NSMenu& menu) override { lines.append(QString::fromStdString(menu.title()) + " opened"); }
    void menuDidClose(NSMenu& menu) override { lines.append(QString::fromStdString(menu.title()) + " closed"); }
    QStringList lines;
};

class StatusItemPresenterTest : public testing::Test {
protected:
    StatusItemPresenterTest()
    {
        item.setMenu(makeMenu("main"));
        presenter = std::make_unique<StatusItemPresenter>(item, menus, makeMenu("short"), MenuDrawing::byUs);
    }

    std::shared_ptr<NSMenu> makeMenu(const std::string& title)
    {
        auto menu = std::make_shared<NSMenu>(title);
        menu->addItem(std::make_shared<NSMenuItem>("row", &kNothing));
        menu->setDelegate(log);
        return menu;
    }

    void letHostsDraw()
    {
        presenter.reset();
        presenter = std::make_unique<StatusItemPresenter>(item, menus, makeMenu("short"), MenuDrawing::byHost);
    }

    static QWidget* strip()
    {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible() && window->windowTitle() == QLatin1String("Quillbox"))
                return window;
        return nullptr;
    }

    // What a host does when its icon is clicked.
    void click(const FakeStatusBar& statusBar, const QString& method = "Activate")
    {
        host.call(statusBar.registeredItems.value(0), "/StatusNotifierItem", "org.kde.StatusNotifierItem", method,
                  { 30, 20 });
    }

    PrivateBus bus;
    BusClient host;
    HeadlessDesktop desktop;
    ManualClock clock;
    std::shared_ptr<MenuLog> log = std::make_shared<MenuLog>();
    NSStatusItem item { NSStatusItem::variableLength };
    MenuPresenter menus;
    std::unique_ptr<StatusItemPresenter> presenter;
};

TEST_F(StatusItemPresenterTest, TheStripShowsOnlyWhereNoHostHasBeenForAWhile)
{
    clock.advance(2900ms);
    EXPECT_FALSE(strip());
    clock.advance(100ms);
    EXPECT_TRUE(strip());
    {
        const FakeStatusBar statusBar;
        EXPECT_TRUE(waitUntil([&] { return !strip(); }));
        EXPECT_EQ(clock.pendingCount(), 0U);
    }
    ASSERT_TRUE(waitUntil([&] { return clock.pendingCount() == 1; }));
    clock.advance(2900ms);
    EXPECT_FALSE(strip());
    {
        // A panel that restarts in time.
        const FakeStatusBar statusBar;
        EXPECT_TRUE(waitUntil([&] { return clock.pendingCount() == 0; }));
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
    ASSERT_TRUE(waitUntil([&] { return clock.pendingCount() == 0; }));
    click(statusBar);
    ASSERT_TRUE(waitUntil([&] { return menus.isOpen(); }));
    click(statusBar);
    ASSERT_TRUE(waitUntil([&] { return !menus.isOpen(); }));
    // What a host without menus asks for.
    click(statusBar, "ContextMenu");
    ASSERT_TRUE(waitUntil([&] { return menus.isOpen(); }));
    menus.close();
    EXPECT_EQ(log->lines, (QStringList { "main opened", "main closed", "short opened", "short closed" }));
}

TEST_F(StatusItemPresenterTest, AMenuGoesWithTheIconThatOpenedIt)
{
    auto statusBar = std::make_unique<FakeStatusBar>();
    ASSERT_TRUE(waitUntil([&] { return clock.pendingCount() == 0; }));
    click(*statusBar);
    ASSERT_TRUE(waitUntil([&] { return menus.isOpen(); }));
    statusBar.reset();
    EXPECT_TRUE(waitUntil([&] { return !menus.isOpen(); }));
    clock.advance(3s);
    ASSERT_TRUE(strip());
    strip()->findChild<QAbstractButton*>()->click();
    ASSERT_TRUE(menus.isOpen());
    statusBar = std::make_unique<FakeStatusBar>();
    EXPECT_TRUE(waitUntil([&] { return !strip(); }));
    EXPECT_FALSE(menus.isOpen());
}

TEST_F(StatusItemPresenterTest, AClickWhileAnAlertRunsBringsTheAlertForward)
{
    const FakeStatusBar statusBar;
    ASSERT_TRUE(waitUntil([&] { return clock.pendingCount() == 0; }));
    desktop.duringAlert = [&] {
        click(statusBar);
        EXPECT_TRUE(waitUntil([&] { return desktop.activations > 0; }));
    };
    NSAlert().runModal();
    EXPECT_EQ(desktop.activations, 1);
    EXPECT_EQ(log->lines, QStringList());
}

TEST_F(StatusItemPresenterTest, AHostThatDrawsTheMenuFindsItFilledAndOpensItAlone)
{
    letHostsDraw();
    auto statusBar = std::make_unique<FakeStatusBar>();
    // Of the icon before this one too.
    ASSERT_TRUE(waitUntil([&] { return log->lines == QStringList { "main opened", "main closed" }; }));
    log->lines.clear();

    MenuHost panel(statusBar->registeredItems.value(0), "/StatusNotifierItem/Menu");
    EXPECT_EQ(panel.layout(0, -1), "1 row");
    panel.tell(0, "opened");
    // The panel goes, and with it the menu that it shows; the strip shows it in our way.
    statusBar.reset();
    ASSERT_TRUE(waitUntil([&] { return log->lines.size() == 2; }));
    clock.advance(3s);
    ASSERT_TRUE(strip());
    strip()->findChild<QAbstractButton*>()->click();
    EXPECT_TRUE(menus.isOpen());
    const FakeStatusBar next;
    ASSERT_TRUE(waitUntil([&] { return log->lines.size() == 6; }));
    EXPECT_FALSE(menus.isOpen());
    EXPECT_EQ(
        log->lines,
        (QStringList { "main opened", "main closed", "main opened", "main closed", "main opened", "main closed" }));
}

TEST_F(StatusItemPresenterTest, AHostThatAsksDuringAnAlertIsToldOnceTheMenuIsThere)
{
    letHostsDraw();
    std::unique_ptr<FakeStatusBar> statusBar;
    std::unique_ptr<MenuHost> panel;
    desktop.duringAlert = [&] {
        statusBar = std::make_unique<FakeStatusBar>();
        ASSERT_TRUE(waitUntil([&] { return clock.pendingCount() == 0; }));
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
    ASSERT_TRUE(waitUntil([&] { return clock.pendingCount() == 0; }));
    click(statusBar);
    ASSERT_TRUE(waitUntil([&] { return menus.isOpen(); }));
    MenuHost panel(statusBar.registeredItems.value(0), "/StatusNotifierItem/Menu");
    panel.layout(0, -1);
    EXPECT_TRUE(menus.isOpen());
    menus.close();
    QStringList updates;
    EXPECT_TRUE(waitUntil([&] { return !(updates += panel.takeUpdates()).isEmpty(); }));
    EXPECT_EQ(panel.layout(0, -1), "1 row");
}

TEST_F(StatusItemPresenterTest, AClickFromAHostThatShouldDrawTheMenuOpensItAtAStripThatGoesWithIt)
{
    letHostsDraw();
    const FakeStatusBar statusBar;
    ASSERT_TRUE(waitUntil([&] { return log->lines.size() == 2; }));
    ASSERT_FALSE(strip());
    click(statusBar);
    ASSERT_TRUE(waitUntil([&] { return menus.isOpen(); }));
    EXPECT_TRUE(strip());
    click(statusBar);
    ASSERT_TRUE(waitUntil([&] { return !strip(); }));
    EXPECT_FALSE(menus.isOpen());
    EXPECT_EQ(log->lines, (QStringList { "main opened", "main closed", "main opened", "main closed" }));
}

TEST_F(StatusItemPresenterTest, AStripThatWasClosedComesBackWhenAskedFor)
{
    presenter->showStripAgain();
    EXPECT_FALSE(strip());
    clock.advance(3s);
    ASSERT_TRUE(strip());
    strip()->close();
    EXPECT_FALSE(strip());
    presenter->showStripAgain();
    EXPECT_TRUE(strip());
}

TEST_F(StatusItemPresenterTest, TheShortMenusOpenDoesAsTheClickDoesAlsoWithoutRows)
{
    const FakeStatusBar statusBar;
    ASSERT_TRUE(waitUntil([&] { return clock.pendingCount() == 0; }));
    for (const bool isEmpty : { false, true }) {
        if (isEmpty)
            item.menu()->removeAllItems();
        log->lines.clear();
        presenter->openMenu();
        EXPECT_TRUE(menus.isOpen());
        menus.close();
        EXPECT_EQ(log->lines.contains("short opened"), isEmpty);
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
}

} // namespace
