#include "MenuPointer.h"

#include "MenuLevels.h"
#include "MenuText.h"

#include <QApplication>
#include <QPolygon>
#include <QStyle>
#include <QToolTip>

#include <algorithm>
#include <chrono>
#include <utility>

namespace quillbox {

namespace {

    using std::chrono::milliseconds;

    // A pointer that is on its way into a submenu, but rests this long on another row, means that row.
    constexpr milliseconds kRestOnTheWay { 300 };
    // How far the pointer may stray on that way, in pixels above and below the submenu.
    constexpr int kStray = 8;
    constexpr int kStepsAside = 2;
    // At an edge the list is scrolled one step at a time, faster the longer it lasts.
    constexpr milliseconds kEdgeStep { 40 };
    constexpr int kStepsToFaster = 25;
    constexpr int kMostRowsPerStep = 50;

    milliseconds styleDelay(QStyle::StyleHint hint, const QWidget& widget)
    {
        return milliseconds(std::max(0, widget.style()->styleHint(hint, nullptr, &widget)));
    }

} // namespace

MenuPointer::MenuPointer(MenuLevels& levels, QPoint start)
    : levels_(levels),
      start_(start),
      position_(start),
      wayStart_(start)
{
}

void MenuPointer::moved(QPoint position, Qt::MouseButtons buttons)
{
    // If popups appear, disappear or scroll under a resting pointer, the display reports it again.
    if (position == position_)
        return;
    position_ = position;
    const bool isFar = (position - start_).manhattanLength() >= QApplication::startDragDistance();
    if (buttons == Qt::NoButton) {
        isDragging_ = isPressed_ = false;
        itemMenuPress_.reset();
        pressedFile_.reset();
    } else if (!isPressed_ && !itemMenuPress_ && isFar) {
        isDragging_ = true;
    }

    const std::optional<std::size_t> level = levels_.levelAt(position);
    if (!level && pressedFile_) {
        // The menu may be closed after this, and another one open.
        levels_.dragOut(pressedLevel_, std::exchange(pressedFile_, nullptr), press_);
        return;
    }
    if (!level || levels_.isBehindItemMenu(*level)) {
        // Rows that lead to an open submenu stay highlighted.
        hoverTimer_.reset();
        edgeTimer_.reset();
        hovered_.reset();
        const std::size_t last = levels_.count() - 1;
        levels_.select(last, std::nullopt);
        explain(last, std::nullopt);
        return;
    }
    hasDraggedIn_ = hasDraggedIn_ || isDragging_;
    MenuPopup& popup = levels_.popup(*level);
    const MenuPopup::Zone zone = popup.zoneAt(position);
    if (zone == MenuPopup::Zone::upperScroller || zone == MenuPopup::Zone::lowerScroller) {
        const int direction = zone == MenuPopup::Zone::upperScroller ? -1 : 1;
        // Small movements of the pointer there must not delay the next step.
        if (!edgeTimer_ || edgeLevel_ != *level || edgeDirection_ != direction)
            scrollAtEdge(*level, direction);
        return;
    }
    edgeTimer_.reset();
    const std::optional<std::size_t> row = popup.rowAt(position);
    if (levels_.openRow(*level) && row != levels_.openRow(*level) && isOnTheWayToSubmenu(*level)) {
        hoverTimer_.reset();
        hovered_.reset();
        wayTimer_ = Clock::current().after(kRestOnTheWay, [this] { takeRowUnderPointer(); });
        return;
    }
    wayStart_ = position;
    hover(*level, row);
}

void MenuPointer::pressed(QPoint position, Qt::MouseButton button)
{
    position_ = position;
    isPressed_ = true;
    pressedFile_.reset();
    const std::optional<std::size_t> level = levels_.levelAt(position);
    if (!level)
        return;
    if (levels_.isBehindItemMenu(*level)) {
        // As with every such menu, a press beside it only closes it, and its release has no meaning.
        isPressed_ = false;
        levels_.closeItemMenu();
        return;
    }
    const std::optional<std::size_t> row = levels_.popup(*level).rowAt(position);
    hover(*level, row);
    if (button == Qt::RightButton && row && openItemMenu(*level, *row))
        return;
    if (button == Qt::LeftButton && row && levels_.popup(*level).hasItemMenu(*row)) {
        pressedFile_ = levels_.popup(*level).item(*row);
        pressedLevel_ = *level;
        press_ = position;
    }
    // As in every menu, a row that can only be opened opens on the press.
    if (row && levels_.popup(*level).isSelectable(*row) && !levels_.popup(*level).item(*row)->action()) {
        cancelPending();
        levels_.openSubmenu(*level, *row);
    }
}

bool MenuPointer::openItemMenu(std::size_t level, std::size_t row)
{
    if (!levels_.popup(level).hasItemMenu(row))
        return false;
    cancelPending();
    explain(level, std::nullopt);
    if (!levels_.openItemMenu(level, row, QRect(position_, QSize(1, 1))))
        return false;
    isPressed_ = false;
    itemMenuPress_ = position_;
    return true;
}

void MenuPointer::released(QPoint position, Qt::KeyboardModifiers modifiers)
{
    position_ = position;
    pressedFile_.reset();
    if (itemMenuPress_) {
        // A click has opened the menu of what can be done with a row; a drag goes on to one of its rows.
        isPressed_ = (position - *itemMenuPress_).manhattanLength() >= QApplication::startDragDistance();
        itemMenuPress_.reset();
    }
    const bool isOfThisMenu = isPressed_ || isDragging_;
    const bool endsDragFromInside = isDragging_ && hasDraggedIn_;
    isPressed_ = isDragging_ = false;
    // The release that ends the click which opened the menu has no meaning.
    if (!isOfThisMenu)
        return;
    const std::optional<std::size_t> level = levels_.levelAt(position);
    if (level && levels_.isBehindItemMenu(*level))
        return;
    if (!level) {
        if (endsDragFromInside && !levels_.anchor().contains(position))
            levels_.closeToCount(0);
        return;
    }
    const std::optional<std::size_t> row = levels_.popup(*level).rowAt(position);
    if (!row)
        return;
    cancelPending();
    levels_.activate(*level, *row, choiceFor(modifiers));
}

void MenuPointer::wheelTurned(QPoint position, double pixels)
{
    position_ = position;
    const std::size_t level = levels_.levelAt(position).value_or(levels_.count() - 1);
    wheelRest_ += pixels;
    const int whole = static_cast<int>(wheelRest_);
    wheelRest_ -= whole;
    if (whole != 0)
        scroll(level, whole);
}

void MenuPointer::cancelPending()
{
    hoverTimer_.reset();
    wayTimer_.reset();
    edgeTimer_.reset();
    hovered_.reset();
}

void MenuPointer::stop()
{
    cancelPending();
    tipTimer_.reset();
    explained_.reset();
    pressedFile_.reset();
    QToolTip::hideText();
}

void MenuPointer::explain(std::size_t level, std::optional<std::size_t> row)
{
    const Place place { level, row };
    if (explained_ == place)
        return;
    explained_ = place;
    tipTimer_.reset();
    QToolTip::hideText();
    if (!row || levels_.popup(level).item(*row)->isSeparatorItem())
        return;
    const milliseconds delay = styleDelay(QStyle::SH_ToolTip_WakeUpDelay, levels_.popup(level));
    tipTimer_ = Clock::current().after(delay, [this, place] {
        if (place.level >= levels_.count())
            return;
        MenuPopup& popup = levels_.popup(place.level);
        const QString tip = popup.tipOf(*place.row);
        const QRect rect = popup.rowRect(*place.row);
        if (tip.isEmpty() || rect.isEmpty())
            return;
        const QPoint at = rect.contains(position_) ? position_ : QPoint(rect.center().x(), rect.bottom());
        QToolTip::showText(at, toolTipMarkup(tip), &popup, rect.translated(-popup.pos()));
    });
}

void MenuPointer::hover(std::size_t level, std::optional<std::size_t> row)
{
    wayTimer_.reset();
    explain(level, row);
    const Place place { level, row };
    if (hovered_ == place)
        return;
    hovered_ = place;
    levels_.select(level, row);
    hoverTimer_.reset();
    const bool canOpen = row && levels_.popup(level).item(*row)->hasSubmenu();
    const bool isOpen = levels_.openRow(level).has_value();
    if (!canOpen && !isOpen)
        return;
    const milliseconds delay = styleDelay(QStyle::SH_Menu_SubMenuPopupDelay, levels_.popup(level));
    hoverTimer_ = Clock::current().after(delay, [this, level, row] { follow(level, row); });
}

// Opens and closes submenus for a pointer that has rested on a row.
void MenuPointer::follow(std::size_t level, std::optional<std::size_t> row)
{
    if (level >= levels_.count())
        return;
    if (row && levels_.openRow(level) == row)
        levels_.closeToCount(level + 2);
    else if (row && levels_.popup(level).item(*row)->hasSubmenu())
        levels_.openSubmenu(level, *row);
    else
        levels_.closeToCount(level + 1);
}

// Whether the pointer, in the popup of `level`, is moving towards its submenu: it is in the triangle between the place
// where it last meant a row and the near edge of the submenu.
bool MenuPointer::isOnTheWayToSubmenu(std::size_t level) const
{
    const QRect parent = levels_.popup(level).geometry();
    const QRect submenu = levels_.popup(level + 1).geometry();
    if (!parent.contains(wayStart_))
        return false;
    const bool isOnTheRight = submenu.center().x() > parent.center().x();
    // On a slanting way, single steps may go straight up or down.
    const int startX = wayStart_.x() + (isOnTheRight ? -kStepsAside : kStepsAside);
    const int distance = isOnTheRight ? submenu.left() - startX : startX - submenu.right();
    const int gone = isOnTheRight ? position_.x() - startX : startX - position_.x();
    if (distance <= 0 || gone <= 0)
        return false;
    const int upper = wayStart_.y() + (submenu.top() - kStray - wayStart_.y()) * gone / distance;
    const int lower = wayStart_.y() + (submenu.bottom() + kStray - wayStart_.y()) * gone / distance;
    return position_.y() >= upper && position_.y() <= lower;
}

void MenuPointer::scrollAtEdge(std::size_t level, int direction)
{
    cancelPending();
    edgeSteps_ = direction == edgeDirection_ ? edgeSteps_ + 1 : 0;
    edgeDirection_ = direction;
    edgeLevel_ = level;
    levels_.select(level, std::nullopt);
    explain(level, std::nullopt);
    edgeTimer_ = Clock::current().after(kEdgeStep, [this, level, direction] {
        if (level >= levels_.count())
            return;
        const int rows = std::min(1 + edgeSteps_ / kStepsToFaster, kMostRowsPerStep);
        levels_.closeToCount(level + 1);
        MenuPopup& popup = levels_.popup(level);
        if (popup.scrollBy(direction * rows * popup.ordinaryRowHeight()))
            scrollAtEdge(level, direction);
    });
}

void MenuPointer::scroll(std::size_t level, int pixels)
{
    if (!levels_.popup(level).scrollBy(pixels))
        return;
    cancelPending();
    levels_.closeToCount(level + 1);
    hover(level, levels_.popup(level).rowAt(position_));
}

void MenuPointer::takeRowUnderPointer()
{
    wayStart_ = position_;
    if (const auto level = levels_.levelAt(position_))
        hover(*level, levels_.popup(*level).rowAt(position_));
}

} // namespace quillbox
