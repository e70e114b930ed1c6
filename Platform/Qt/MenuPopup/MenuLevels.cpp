#include "MenuLevels.h"

#include "CanonicalPath.h"
#include "MenuPlacement.h"
#include "MenuText.h"
#include "NarrowingLine.h"
#include "NSWorkspace.h"
#include "PathStatus.h"
#include "WorkArea.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <limits>

namespace quillbox {

namespace {

    // How far a submenu overlaps its parent menu, so that the pointer never leaves both on the way.
    constexpr int kSubmenuOverlap = 3;
    // By then a popup that was just opened has been painted.
    constexpr std::chrono::milliseconds kUntilSpare { 50 };

    // Returns the screen nearest to `point`; an icon in a panel may be at the very edge.
    QScreen& screenFor(QPoint point)
    {
        if (QScreen* screen = QGuiApplication::screenAt(point))
            return *screen;
        QScreen* nearest = QGuiApplication::primaryScreen();
        int least = std::numeric_limits<int>::max();
        for (QScreen* screen : QGuiApplication::screens()) {
            const QRect area = screen->geometry();
            const QPoint inside(std::clamp(point.x(), area.left(), area.right()),
                                std::clamp(point.y(), area.top(), area.bottom()));
            const int distance = (point - inside).manhattanLength();
            if (distance < least) {
                least = distance;
                nearest = screen;
            }
        }
        return *nearest;
    }

    // The largest width and the opacity of the picture of a dragged row.
    constexpr int kWidestPicture = 320;
    constexpr double kPictureOpacity = 0.65;

    // Takes the picture of the item's row if the row is visible.
    void takePicture(MenuPopup& popup, const NSMenuItem& item, QPoint press, FileDrag& drag)
    {
        const auto& rows = popup.rows().visibleRows();
        const auto row = std::find_if(rows.begin(), rows.end(), [&](const MenuLayout::VisibleRow& visible) {
            return popup.item(visible.row).get() == &item;
        });
        if (row == rows.end())
            return;
        QRect rect = popup.rowRect(row->row);
        const int width = std::min(rect.width(), kWidestPicture);
        if (popup.layoutDirection() == Qt::RightToLeft)
            rect.setLeft(rect.x() + rect.width() - width);
        else
            rect.setWidth(width);
        const QPixmap shown = popup.grab(rect.translated(-popup.pos()));
        drag.picture = QPixmap(shown.size());
        drag.picture.setDevicePixelRatio(shown.devicePixelRatio());
        drag.picture.fill(Qt::transparent);
        QPainter painter(&drag.picture);
        painter.setOpacity(kPictureOpacity);
        painter.drawPixmap(0, 0, shown);
        drag.hotSpot = QPoint(std::clamp(press.x() - rect.x(), 0, rect.width() - 1), rect.height() / 2);
    }

} // namespace

MenuLevels::MenuLevels(MenuPopupEvents& events, AssistiveTechnology listener)
    : events_(events),
      accessibility_(listener)
{
    tracking_.onTakeOffScreen = [this] { takeOffScreen(0); };
}

MenuLevels::~MenuLevels()
{
    onClosed = nullptr;
    closeToCount(0);
}

bool MenuLevels::open(const std::shared_ptr<NSMenu>& menu, QRect anchor, const std::shared_ptr<NSMenu>& reserve,
                      QWindow* owner)
{
    closeToCount(0);
    if (!tracking_.open(menu, reserve))
        return false;
    if (tracking_.menu(0)->itemArray().empty()) {
        tracking_.closeAll();
        return false;
    }
    anchor_ = anchor;
    owner_ = owner;
    const QPoint centre = anchor.isEmpty() ? anchor.topLeft() : anchor.center();
    const QScreen& screen = screenFor(centre);
    available_ = workAreaOf(screen);
    auto popup = std::make_unique<MenuPopup>(events_, available_);
    popup->setMenu(tracking_.menu(0));
    const Qt::LayoutDirection direction = popup->layoutDirection();
    const QRect geometry = placeBesideAnchor(popup->wantedSize(), anchor, available_, direction);
    activeLevel_ = 0;
    popup->setName(QString::fromStdString(popup->menu()->title()));
    show(std::move(popup), geometry, direction == Qt::RightToLeft ? Qt::RightEdge : Qt::LeftEdge);
    return true;
}

void MenuLevels::closeToCount(std::size_t count)
{
    takeOffScreen(count);
    tracking_.closeToLevelCount(count);
}

void MenuLevels::openSubmenu(std::size_t level, std::size_t row)
{
    const std::shared_ptr<NSMenuItem> item = popup(level).item(row);
    if (!item->hasSubmenu() || openRow(level) == row)
        return;
    closeToCount(level + 1);
    if (!tracking_.openSubmenu(level, item))
        return;
    const std::shared_ptr<NSMenu>& submenu = tracking_.menu(level + 1);
    if (submenu->itemArray().empty()) {
        tracking_.closeToLevelCount(level + 1);
        return;
    }
    MenuPopup& parent = popup(level);
    parent.select(row);
    updateFocus();
    auto child = takeSpare();
    child->setMenu(submenu);
    // Submenus go away from the levels above while there is room, so that those stay visible.
    const Qt::LayoutDirection onward = parent.fixedEdge() == Qt::RightEdge ? Qt::RightToLeft : Qt::LeftToRight;
    const QRect geometry = placeBesideRow(child->wantedSize(), child->firstRowTop(), parent.rowRect(row),
                                          parent.geometry(), available_, kSubmenuOverlap, onward);
    const std::string& title = submenu->title();
    child->setName(title.empty() ? shownLines(*item).join(QChar(' ')) : QString::fromStdString(title));
    parent.setOpenRow(row);
    accessibility_.submenuChanged(parent, row);
    show(std::move(child), geometry, geometry.x() < parent.x() ? Qt::RightEdge : Qt::LeftEdge);
}

bool MenuLevels::openItemMenu(std::size_t level, std::size_t row, QRect anchor)
{
    if (!popup(level).hasItemMenu(row))
        return false;
    const std::shared_ptr<NSMenuItem> item = popup(level).item(row);
    closeToCount(level + 1);
    if (!tracking_.openMenuForItem(level, item))
        return false;
    itemMenuLevel_ = level + 1;
    MenuPopup& parent = popup(level);
    parent.select(row);
    parent.setOpenRow(row);
    auto child = takeSpare();
    child->setMenu(tracking_.menu(level + 1));
    const Qt::LayoutDirection direction = child->layoutDirection();
    const QRect geometry = placeBesideAnchor(child->wantedSize(), anchor, available_, direction);
    child->setName(QString::fromStdString(tracking_.menu(level + 1)->title()));
    show(std::move(child), geometry, direction == Qt::RightToLeft ? Qt::RightEdge : Qt::LeftEdge);
    return true;
}

void MenuLevels::beginNarrowing(std::size_t level)
{
    closeToCount(level + 1);
    popup(level).beginNarrowing();
}

void MenuLevels::narrow(std::size_t level)
{
    closeToCount(level + 1);
    popup(level).narrow();
    // The same number of a row stands for another row now.
    focus_ = {};
    const bool isNarrowed = !popup(level).line()->text().isEmpty();
    select(level, isNarrowed ? std::optional<std::size_t>(0) : std::nullopt);
}

void MenuLevels::endNarrowing(std::size_t level)
{
    closeToCount(level + 1);
    const std::optional<std::size_t> row = popup(level).endNarrowing();
    focus_ = {};
    select(level, row);
}

void MenuLevels::dragOut(std::size_t level, const std::shared_ptr<NSMenuItem>& item, QPoint press)
{
    const Result<std::string> path =
        pathInCanonicalDirectory(NSWorkspace::sharedWorkspace().fileBehind(*item->representedFile()));
    if (!path || !statusOfPath(*path, LastLink::notFollowed))
        return;
    FileDrag drag { *path, {}, {}, {} };
    if (level < count())
        takePicture(popup(level), *item, press, drag);
    if (QGuiApplication::platformName().startsWith(QStringLiteral("wayland")))
        drag.origin = popups_.front().get();
    else
        // An open popup holds the pointer, which the drag needs.
        closeToCount(0);
    runDrag(drag);
}

bool MenuLevels::activate(std::size_t level, std::size_t row, MenuTracking::Choice choice)
{
    if (!popup(level).isSelectable(row))
        return false;
    const std::shared_ptr<NSMenuItem> item = popup(level).item(row);
    if (!item->action()) {
        select(level, row);
        openSubmenu(level, row);
        return false;
    }
    // The action may open the menu again or run an alert, so no state of this object is used after it.
    return tracking_.choose(item, choice);
}

std::optional<std::size_t> MenuLevels::levelAt(QPoint global) const
{
    for (std::size_t level = count(); level-- > 0;)
        if (popups_[level]->zoneAt(global) != MenuPopup::Zone::outside)
            return level;
    return std::nullopt;
}

void MenuLevels::select(std::size_t level, std::optional<std::size_t> row)
{
    const bool isSelectable = row && popup(level).isSelectable(*row);
    for (std::size_t above = 0; above < level; ++above)
        popup(above).select(openRow(above));
    popup(level).select(isSelectable ? row : std::nullopt);
    for (std::size_t below = level + 1; below < count(); ++below)
        popup(below).select(std::nullopt);
    if (isSelectable)
        activeLevel_ = level;
    updateFocus();
}

void MenuLevels::show(std::unique_ptr<MenuPopup> popup, QRect geometry, Qt::Edge fixedEdge)
{
    popup->setFixedEdge(fixedEdge);
    popup->setGeometry(geometry);
    // Wayland places a popup relative to its parent window: for a submenu, the menu from which it was opened.
    popup->winId();
    popup->windowHandle()->setTransientParent(isOpen() ? popups_.back()->windowHandle() : owner_.data());
    popups_.push_back(std::move(popup));
    popups_.back()->show();
    if (popups_.size() == 1)
        grab_.take(*popups_.front());
    accessibility_.opened(*popups_.back());
    updateFocus();
    // A spare popup saves round trips to an X server.
    if (QGuiApplication::platformName() == QStringLiteral("xcb"))
        spareTimer_ = Clock::current().after(kUntilSpare, [this] { makeSpare(); });
}

std::unique_ptr<MenuPopup> MenuLevels::takeSpare()
{
    return spare_ ? std::move(spare_) : std::make_unique<MenuPopup>(events_, available_);
}

void MenuLevels::makeSpare()
{
    if (spare_)
        return;
    spare_ = std::make_unique<MenuPopup>(events_, available_);
    spare_->makeWindow();
}

void MenuLevels::takeOffScreen(std::size_t count)
{
    if (popups_.size() <= count)
        return;
    if (count == 0) {
        grab_.release();
        spareTimer_.reset();
        spare_.reset();
    }
    while (popups_.size() > count) {
        std::unique_ptr<MenuPopup> popup = std::move(popups_.back());
        popups_.pop_back();
        accessibility_.closing(*popup);
        MenuPopup::retire(std::move(popup));
    }
    activeLevel_ = count > 0 ? std::min(activeLevel_, count - 1) : 0;
    if (itemMenuLevel_ && count <= *itemMenuLevel_)
        itemMenuLevel_.reset();
    if (count > 0) {
        MenuPopup& last = *popups_.back();
        if (const std::optional<std::size_t> row = last.openRow()) {
            last.setOpenRow(std::nullopt);
            accessibility_.submenuChanged(last, *row);
        }
    }
    updateFocus();
    if (count == 0 && onClosed)
        onClosed();
}

void MenuLevels::updateFocus()
{
    for (std::size_t level = 0; level < count(); ++level)
        popup(level).setTakesKeys(level == activeLevel_);
    const Focus former = focus_;
    focus_ = isOpen() ? Focus { popups_[activeLevel_].get(), popups_[activeLevel_]->selection() } : Focus {};
    // If the highlight is removed, the popup keeps the focus and nothing is announced.
    if (focus_ != former && (focus_.row || focus_.popup != former.popup) && isOpen())
        accessibility_.focusMoved(*popups_[activeLevel_], focus_.row);
}

} // namespace quillbox
