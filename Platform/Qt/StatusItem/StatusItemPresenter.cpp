#include "StatusItemPresenter.h"

#include "Clock.h"
#include "HeldActivationToken.h"
#include "MenuExporter.h"
#include "MenuPresenter.h"
#include "NSAlert.h"
#include "NSApplication.h"
#include "SessionBus.h"
#include "StatusNotifierItem.h"
#include "StatusNotifierRegistration.h"
#include "StatusStrip.h"
#include "TrayIcon.h"

#include <QCursor>
#include <QGuiApplication>
#include <QObject>
#include <QScreen>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

namespace quillbox {

namespace {

    // A panel that starts with the session, or restarts, is there by then; the strip need not flash up.
    constexpr std::chrono::seconds kGrace { 3 };

    const QString kMenuPath = QStringLiteral("/StatusNotifierItem/Menu");
    const QString kNoMenu = QStringLiteral("/");

    // Hosts may tell of any point of the icon; this is the side of a large one, in logical pixels.
    constexpr int kIconSide = 64;

    // From a host's device pixels to logical ones; a screen's origin is the same in both. None where there is no screen
    // there, and at (0, 0), which comes from hosts that don't say where the click was.
    std::optional<QPoint> toldPoint(QPoint devicePixels)
    {
        if (devicePixels.isNull())
            return std::nullopt;
        for (const QScreen* screen : QGuiApplication::screens()) {
            const QRect logical = screen->geometry();
            const double scale = screen->devicePixelRatio();
            if (QRect(logical.topLeft(), logical.size() * scale).contains(devicePixels))
                return logical.topLeft() + ((devicePixels - logical.topLeft()).toPointF() / scale).toPoint();
        }
        return std::nullopt;
    }

    // Where the icon was clicked. Some panels tell of another place than that; an X server knows where the pointer is,
    // other displays only while it is over a window of ours.
    QPoint pointOfClick(QPoint devicePixels)
    {
        const QPoint pointer = QCursor::pos();
        const QPoint told = toldPoint(devicePixels).value_or(pointer);
        const QPoint difference = told - pointer;
        const bool isNear = std::max(std::abs(difference.x()), std::abs(difference.y())) <= kIconSide;
        return isNear || QGuiApplication::platformName() != QLatin1String("xcb") ? told : pointer;
    }

    QRect atPoint(QPoint point)
    {
        return { point, QSize(0, 0) };
    }

} // namespace

// Where the icon is follows from three facts: whether a host shows the notifier item, whether a tray has
// docked the icon, and whether neither has been so for the time of grace.
struct StatusItemPresenter::State {
    State(NSStatusItem& shownItem, MenuPresenter& presenter, std::shared_ptr<NSMenu> shortMenuOfItem,
          MenuDrawing menuDrawing);
    ~State() { menus.onClosed = nullptr; }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    void showOnBus();
    void busReturned();

    void hostsChanged();
    void graceIsOver();
    void clicked(Qt::MouseButton button, QRect anchor);
    void openMenu(QRect anchor);
    void openShortMenu(QRect anchor);
    void openMenuAgain();
    void openAtStrip();
    void showStrip();
    void menuHasClosed();
    void open(const std::shared_ptr<NSMenu>& menu, QRect anchor, const std::shared_ptr<NSMenu>& reserve);

    NSStatusItem& item;
    MenuPresenter& menus;
    std::shared_ptr<NSMenu> shortMenu;
    MenuDrawing drawing;
    std::function<void(const std::string&)> onActivationToken;
    HeldActivationToken heldToken;

    StatusIcon icon;
    SessionBus bus;
    // Null without a session bus.
    std::unique_ptr<StatusNotifierItem> notifierItem;
    // Null where there is no menu to export either.
    std::unique_ptr<MenuExporter> exporter;
    std::unique_ptr<StatusNotifierRegistration> registration;
    // Null without an X server.
    std::unique_ptr<TrayIcon> tray;
    // Null while something else shows the icon.
    std::unique_ptr<StatusStrip> strip;
    std::unique_ptr<Clock::Timer> grace;
    enum class Host { none, statusBar, tray };
    Host host = Host::none;
    // Where the short menu was opened last by a click on the icon.
    std::optional<QRect> shortMenuAnchor;
    // What waits in the event loop goes with it.
    QObject context;
};

StatusItemPresenter::State::State(NSStatusItem& shownItem, MenuPresenter& presenter,
                                  std::shared_ptr<NSMenu> shortMenuOfItem, MenuDrawing menuDrawing)
    : item(shownItem),
      menus(presenter),
      shortMenu(std::move(shortMenuOfItem)),
      drawing(menuDrawing),
      icon(item.button() && item.button()->image ? *item.button()->image : NSImage()),
      tray(TrayIcon::create(icon))
{
    menus.onClosed = [this] { QTimer::singleShot(0, &context, [this] { menuHasClosed(); }); };
    if (bus.isConnected())
        showOnBus();
    bus.onReturned = [this] { busReturned(); };
    if (tray) {
        tray->onChanged = [this] { hostsChanged(); };
        tray->onClick = [this](Qt::MouseButton button, QRect rect) { clicked(button, rect); };
        // The tray is the best place there will be where there is no bus.
        tray->setWanted(!registration);
    }
    hostsChanged();
}

void StatusItemPresenter::State::showOnBus()
{
    const bool isByHost = drawing == MenuDrawing::byHost;
    const std::shared_ptr<NSMenu> exported = isByHost && item.menu() ? item.menu() : shortMenu;
    notifierItem = std::make_unique<StatusNotifierItem>(bus.connection(), icon, exported ? kMenuPath : kNoMenu,
                                                        exported ? drawing : MenuDrawing::byUs);
    if (!isByHost) {
        notifierItem->onActivate = [this](QPoint point) { openMenu(atPoint(pointOfClick(point))); };
        notifierItem->onContextMenu = [this](QPoint point) { openShortMenu(atPoint(pointOfClick(point))); };
    } else if (!waitsForSecondClick(qEnvironmentVariable("XDG_CURRENT_DESKTOP"))) {
        // Some hosts tell of a click and open nothing, whatever the item says of itself.
        notifierItem->onActivate = [this](QPoint) { openAtStrip(); };
    }
    notifierItem->onActivationToken = [this](const QDBusMessage& call) {
        if (onActivationToken)
            onActivationToken(call.arguments().at(0).toString().toStdString());
        return exporter && showsBusyPointer(exporter->hostKind(call.service()))
            && heldToken.hold(call, bus.connection());
    };
    if (exported) {
        exporter = std::make_unique<MenuExporter>(bus.connection(), kMenuPath, exported, shortMenu);
        exporter->setOtherWay([this] { return menus.isOpen(); }, [this] { menus.close(); });
        exporter->setChoiceHandlers([this] { heldToken.clickCame(); }, [this] { heldToken.actionEnded(); });
    }
    registration = std::make_unique<StatusNotifierRegistration>(bus.connection());
    registration->onShownChanged = [this] { hostsChanged(); };
}

// All that was on the old connection went with it.
void StatusItemPresenter::State::busReturned()
{
    if (exporter)
        exporter->close();
    registration.reset();
    exporter.reset();
    notifierItem.reset();
    showOnBus();
    hostsChanged();
}

void StatusItemPresenter::State::hostsChanged()
{
    const bool isInStatusBar = registration && registration->isShown();
    if (isInStatusBar && tray)
        tray->setWanted(false);
    const Host now = isInStatusBar ? Host::statusBar : tray && tray->isDocked() ? Host::tray : Host::none;
    if (std::exchange(host, now) != now)
        menus.close(); // What is open was opened by the icon that goes.
    if (exporter && !isInStatusBar)
        exporter->close();
    else if (exporter && drawing == MenuDrawing::byHost)
        exporter->fill();
    if (host != Host::none) {
        grace.reset();
        strip.reset();
    } else if (!strip && !grace) {
        grace = Clock::current().after(kGrace, [this] { graceIsOver(); });
    }
}

void StatusItemPresenter::State::graceIsOver()
{
    grace.reset();
    if (tray && !tray->isWanted()) {
        tray->setWanted(true);
        if (tray->isPresent()) {
            hostsChanged(); // The tray has as long to take the icon.
            return;
        }
    }
    showStrip();
}

void StatusItemPresenter::State::showStrip()
{
    if (!strip) {
        strip = std::make_unique<StatusStrip>(icon);
        strip->onClick = [this](Qt::MouseButton button, QRect rect) { clicked(button, rect); };
    }
    strip->show();
}

// Popups of ours need a window to belong to where the session's hosts draw menus; this is the one we have.
void StatusItemPresenter::State::openAtStrip()
{
    if (menus.isOpen() || NSAlert::isAnyRunning()) {
        openMenu({});
        return;
    }
    showStrip();
    strip->activateWindow();
    strip->whenDrawn([this](QRect rect) { openMenu(rect); });
}

void StatusItemPresenter::State::menuHasClosed()
{
    if (menus.isOpen())
        return;
    if (exporter)
        exporter->fillIfDue();
    // It was there for the menu alone.
    if (host != Host::none)
        strip.reset();
}

void StatusItemPresenter::State::clicked(Qt::MouseButton button, QRect anchor)
{
    if (button == Qt::LeftButton)
        openMenu(anchor);
    else if (button == Qt::RightButton)
        openShortMenu(anchor);
}

void StatusItemPresenter::State::openMenu(QRect anchor)
{
    open(item.menu() ? item.menu() : shortMenu, anchor, shortMenu);
}

void StatusItemPresenter::State::openMenuAgain()
{
    const std::optional<QRect> anchor = std::exchange(shortMenuAnchor, std::nullopt);
    if (drawing == MenuDrawing::byHost)
        openAtStrip();
    else
        openMenu(anchor.value_or(atPoint(QCursor::pos())));
}

void StatusItemPresenter::State::openShortMenu(QRect anchor)
{
    shortMenuAnchor = anchor;
    open(shortMenu, anchor, nullptr);
}

void StatusItemPresenter::State::open(const std::shared_ptr<NSMenu>& menu, QRect anchor,
                                      const std::shared_ptr<NSMenu>& reserve)
{
    if (exporter)
        exporter->close();
    if (menus.isOpen()) {
        menus.close();
        return;
    }
    if (NSAlert::isAnyRunning())
        NSApplication::shared().activate(true); // The alert wants its answer first.
    else if (menu)
        menus.popUp(menu, anchor, reserve, strip ? strip->windowHandle() : nullptr);
}

StatusItemPresenter::StatusItemPresenter(NSStatusItem& item, MenuPresenter& menus, std::shared_ptr<NSMenu> shortMenu,
                                         MenuDrawing drawing)
    : state_(std::make_unique<State>(item, menus, std::move(shortMenu), drawing))
{
}

StatusItemPresenter::~StatusItemPresenter() = default;

void StatusItemPresenter::setActivationTokenHandlers(std::function<void(const std::string&)> take,
                                                     std::function<bool()> isTaken)
{
    state_->onActivationToken = std::move(take);
    state_->heldToken.isTaken = std::move(isTaken);
}

void StatusItemPresenter::openMenu()
{
    state_->openMenuAgain();
}

void StatusItemPresenter::showStripAgain()
{
    if (state_->strip)
        state_->strip->show();
}

void StatusItemPresenter::alertHasEnded()
{
    State& state = *state_;
    // The alert counts as running until its caller goes on.
    QTimer::singleShot(0, &state.context, [&state] {
        if (state.exporter)
            state.exporter->fillIfDue();
    });
}

} // namespace quillbox
