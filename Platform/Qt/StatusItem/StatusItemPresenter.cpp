#include "StatusItemPresenter.h"

#include "Clock.h"
#include "HeldActivationToken.h"
#include "IconPlace.h"
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
#include <QTimer>

#include <optional>
#include <utility>

namespace quillbox {

namespace {

    // A panel that starts with the session, or restarts, is there by then, and the strip need not be shown for a
    // moment.
    constexpr std::chrono::seconds kGrace { 3 };

    const QString kMenuPath = QStringLiteral("/StatusNotifierItem/Menu");
    const QString kNoMenu = QStringLiteral("/");

    QRect atPoint(QPoint point)
    {
        return { point, QSize(0, 0) };
    }

} // namespace

// Where the icon is shown depends on whether a host shows the notifier item, whether a tray has taken the icon, and
// whether neither has been so for the time kGrace.
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
    void openMenuByKeyboard();
    QRect iconPlace() const;
    void openAtStrip(bool isByKeyboard = false);
    void openMenuIfDue();
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
    // Null if there is no session bus.
    std::unique_ptr<StatusNotifierItem> notifierItem;
    // Null if there is also no menu to export.
    std::unique_ptr<MenuExporter> exporter;
    std::unique_ptr<StatusNotifierRegistration> registration;
    // Null if there is no X server.
    std::unique_ptr<TrayIcon> tray;
    // Null while the icon is shown elsewhere.
    std::unique_ptr<StatusStrip> strip;
    std::unique_ptr<Clock::Timer> grace;
    enum class Host { none, statusBar, tray };
    Host host = Host::none;
    // Where a click on the icon last opened the short menu.
    std::optional<QRect> shortMenuAnchor;
    // Where the host's icon was last clicked.
    std::optional<QRect> clickedPlace;
    // Whether the key that opens the menu was pressed before there was an icon.
    bool isMenuDue = false;
    // Deferred calls are cancelled when this is destroyed.
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
        // If there is no bus, the tray is the best place for the icon.
        tray->setWanted(!registration);
    }
    hostsChanged();
}

void StatusItemPresenter::State::showOnBus()
{
    const bool isByHost = drawing == MenuDrawing::byHost;
    const QString desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    const std::shared_ptr<NSMenu> exported = isByHost && item.menu() ? item.menu() : shortMenu;
    notifierItem = std::make_unique<StatusNotifierItem>(bus.connection(), icon, exported ? kMenuPath : kNoMenu,
                                                        exported ? drawing : MenuDrawing::byUs);
    if (!isByHost) {
        notifierItem->onActivate = [this](QPoint point) {
            clickedPlace = atPoint(pointOfClick(point));
            openMenu(*clickedPlace);
        };
        notifierItem->onContextMenu = [this](QPoint point) {
            clickedPlace = atPoint(pointOfClick(point));
            openShortMenu(*clickedPlace);
        };
    } else if (!opensMenuUnlessActivated(desktops)) {
        // Some hosts report a click and open nothing, whatever the item says about clicks.
        notifierItem->onActivate = [this](QPoint) { openAtStrip(); };
    }
    notifierItem->onActivationToken = [this](const QDBusMessage& call) {
        if (onActivationToken)
            onActivationToken(call.arguments().at(0).toString().toStdString());
        return exporter && showsBusyPointer(exporter->hostKind(call.service()))
            && heldToken.hold(call, bus.connection());
    };
    if (exported) {
        exporter = std::make_unique<MenuExporter>(bus.connection(), kMenuPath, exported, shortMenu, desktops);
        exporter->setOtherWay([this] { return menus.isOpen(); }, [this] { menus.close(); });
        exporter->setChoiceHandlers([this] { heldToken.clickCame(); }, [this] { heldToken.actionEnded(); });
    }
    registration = std::make_unique<StatusNotifierRegistration>(bus.connection());
    registration->onShownChanged = [this] { hostsChanged(); };
}

// Everything on the old connection is gone.
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
    if (std::exchange(host, now) != now) {
        menus.close(); // The open menu belongs to the icon that disappears.
        clickedPlace.reset();
    }
    if (exporter && !isInStatusBar)
        exporter->close();
    else if (exporter && drawing == MenuDrawing::byHost)
        exporter->fill();
    if (host != Host::none) {
        if (drawing == MenuDrawing::byUs)
            menus.warmUp();
        grace.reset();
        strip.reset();
        openMenuIfDue();
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
            hostsChanged(); // The tray has the same time to take the icon.
            return;
        }
    }
    showStrip();
    openMenuIfDue();
}

void StatusItemPresenter::State::showStrip()
{
    if (!strip) {
        strip = std::make_unique<StatusStrip>(icon);
        strip->onClick = [this](Qt::MouseButton button, QRect rect) { clicked(button, rect); };
    }
    strip->show();
    menus.warmUp();
}

// In sessions whose hosts draw menus, popups of ours need a parent window; the strip is the only one there is.
void StatusItemPresenter::State::openAtStrip(bool isByKeyboard)
{
    if (menus.isOpen() || NSAlert::isAnyRunning()) {
        openMenu({});
        return;
    }
    showStrip();
    strip->activateWindow();
    strip->whenDrawn([this, isByKeyboard](QRect rect) {
        openMenu(rect);
        if (isByKeyboard)
            menus.beginByKeyboard();
    });
}

void StatusItemPresenter::State::menuHasClosed()
{
    if (menus.isOpen())
        return;
    if (exporter)
        exporter->fillIfDue();
    // The strip was shown only for the menu.
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

void StatusItemPresenter::State::openMenuByKeyboard()
{
    isMenuDue = host == Host::none && !strip;
    // A key that is held down is reported again and again.
    if (isMenuDue || menus.isOpen())
        return;
    if (drawing == MenuDrawing::byHost) {
        openAtStrip(true);
        return;
    }
    openMenu(iconPlace());
    menus.beginByKeyboard();
}

void StatusItemPresenter::State::openMenuIfDue()
{
    if (isMenuDue)
        QTimer::singleShot(0, &context, [this] {
            if (std::exchange(isMenuDue, false))
                openMenuByKeyboard();
        });
}

// Hosts tell where their icon is only when it is clicked.
QRect StatusItemPresenter::State::iconPlace() const
{
    if (strip)
        return strip->iconRect();
    if (const auto docked = tray ? tray->place() : std::nullopt)
        return { toldPoint(docked->first).value_or(QPoint()), docked->second };
    return clickedPlace.value_or(atPoint(usualPlaceOfIcons()));
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
        NSApplication::shared().activate(true); // The alert waits for its answer.
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

void StatusItemPresenter::openMenuByKeyboard()
{
    state_->openMenuByKeyboard();
}

void StatusItemPresenter::showStripAgain()
{
    if (state_->strip)
        state_->strip->show();
}

void StatusItemPresenter::alertHasEnded()
{
    State& state = *state_;
    // The alert counts as running until its caller continues.
    QTimer::singleShot(0, &state.context, [&state] {
        if (state.exporter)
            state.exporter->fillIfDue();
    });
}

} // namespace quillbox
