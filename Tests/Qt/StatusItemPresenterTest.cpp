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

#include <algorithm>

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
        item.setMenu(makeMenu("main", 2));
        presenter = std::make_unique<StatusItemPresenter>(item, menus, makeMenu("short", 2), MenuDrawing::byUs);
    }

    std::shared_ptr<NSMenu> makeMenu(const std::string& title, int rows)
    {
        auto menu = std::make_shared<NSMenu>(title);
        for (int row = 0; row < rows; ++row)
            menu->addItem(std::make_shared<NSMenuItem>("row", &kNothing));
        menu->setDelegate(log);
        return menu;
    }

    static QWidget* strip()
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        const auto found = std::find_if(windows.begin(), windows.end(), [](const QWidget* window) {
            return window->isVisible() && window->windowTitle() == QLatin1String("Quillbox");
        });
        return found == windows.end() ? nullptr : *found;
    }
    bool isThereAStrip() { return strip() != nullptr; }

    // What a host does when its icon is clicked.
    void click(const FakeStatusBar& statusBar, const QString& method = "Activate")
    {
        const QString service = statusBar.registeredItems.value(0);
        EXPECT_EQ(
            host.call(service, "/StatusNotifierItem", "org.kde.StatusNotifierItem", method, { 30, 20 }).errorName(),
            "");
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
    EXPECT_FALSE(isThereAStrip());
    clock.advance(100ms);
    EXPECT_TRUE(isThereAStrip());
    {
        const FakeStatusBar statusBar;
        EXPECT_TRUE(waitUntil([&] { return !isThereAStrip(); }));
        EXPECT_EQ(clock.pendingCount(), 0U);
    }
    ASSERT_TRUE(waitUntil([&] { return clock.pendingCount() == 1; }));
    clock.advance(2900ms);
    EXPECT_FALSE(isThereAStrip());
    {
        // A panel that restarts in time.
        const FakeStatusBar statusBar;
        EXPECT_TRUE(waitUntil([&] { return clock.pendingCount() == 0; }));
    }
    ASSERT_TRUE(waitUntil([&] { return clock.pendingCount() == 1; }));
    clock.advance(3s);
    EXPECT_TRUE(isThereAStrip());
    clock.advance(1h);
    EXPECT_EQ(clock.pendingCount(), 0U);
    presenter.reset();
    EXPECT_FALSE(isThereAStrip());
}

TEST_F(StatusItemPresenterTest, AClickOnTheIconOpensTheMenuAndTheNextOneClosesIt)
{
    const FakeStatusBar statusBar;
    ASSERT_TRUE(waitUntil([&] { return clock.pendingCount() == 0; }));
    click(statusBar);
    ASSERT_TRUE(waitUntil([&] { return menus.isOpen(); }));
    click(statusBar);
    ASSERT_TRUE(waitUntil([&] { return !menus.isOpen(); }));
    EXPECT_EQ(log->lines, (QStringList { "main opened", "main closed" }));
}

TEST_F(StatusItemPresenterTest, AHostWithoutMenusOpensTheShortMenu)
{
    const FakeStatusBar statusBar;
    ASSERT_TRUE(waitUntil([&] { return clock.pendingCount() == 0; }));
    click(statusBar, "ContextMenu");
    ASSERT_TRUE(waitUntil([&] { return menus.isOpen(); }));
    EXPECT_EQ(log->lines, QStringList { "short opened" });
    menus.close();
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

TEST_F(StatusItemPresenterTest, AClickOnTheStripOpensTheMenu)
{
    clock.advance(3s);
    ASSERT_TRUE(isThereAStrip());
    auto* button = strip()->findChild<QAbstractButton*>();
    ASSERT_TRUE(button);
    EXPECT_EQ(button->accessibleName(), "Quillbox");
    button->click();
    EXPECT_EQ(log->lines, QStringList { "main opened" });
    menus.close();
}

TEST_F(StatusItemPresenterTest, TheTokenOfTheHostIsPassedOn)
{
    std::string token;
    presenter->setActivationTokenHandler([&token](const std::string& handedOver) { token = handedOver; });
    const FakeStatusBar statusBar;
    ASSERT_TRUE(waitUntil([&] { return clock.pendingCount() == 0; }));
    host.call(statusBar.registeredItems.value(0), "/StatusNotifierItem", "org.kde.StatusNotifierItem",
              "ProvideXdgActivationToken", { "token-2" });
    EXPECT_EQ(token, "token-2");
}

TEST_F(StatusItemPresenterTest, AHostThatDrawsTheMenuFindsItFilledAndOpensItAlone)
{
    presenter = std::make_unique<StatusItemPresenter>(item, menus, makeMenu("short", 2), MenuDrawing::byHost);
    auto statusBar = std::make_unique<FakeStatusBar>();
    // Of the icon before this one too.
    ASSERT_TRUE(waitUntil([&] { return log->lines.contains("main closed"); }));
    EXPECT_EQ(log->lines, (QStringList { "main opened", "main closed" }));
    log->lines.clear();

    const QString path = "/StatusNotifierItem/Menu";
    MenuHost panel(statusBar->registeredItems.value(0), path);
    EXPECT_EQ(panel.layout(0, -1), "1 row, 2 row");
    panel.tell(0, "opened");
    ASSERT_TRUE(waitUntil([&] { return !log->lines.isEmpty(); }));
    EXPECT_EQ(log->lines, QStringList { "main opened" });
    // The panel goes, and with it the menu that it shows; the strip shows it in our way.
    statusBar.reset();
    ASSERT_TRUE(waitUntil([&] { return log->lines.size() == 2; }));
    clock.advance(3s);
    ASSERT_TRUE(isThereAStrip());
    strip()->findChild<QAbstractButton*>()->click();
    EXPECT_TRUE(menus.isOpen());
    const FakeStatusBar next;
    ASSERT_TRUE(waitUntil([&] { return log->lines.size() == 6; }));
    EXPECT_FALSE(menus.isOpen());
    EXPECT_EQ(
        log->lines,
        (QStringList { "main opened", "main closed", "main opened", "main closed", "main opened", "main closed" }));
}

TEST(MenuDrawing, FollowsFromTheSessionAlone)
{
    const struct {
        const char* platform;
        const char* sessionType;
        const char* desktops;
        MenuDrawing drawing;
    } cases[] = {
        { "xcb", "", "", MenuDrawing::byUs },
        { "xcb", "x11", "XFCE", MenuDrawing::byUs },
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
