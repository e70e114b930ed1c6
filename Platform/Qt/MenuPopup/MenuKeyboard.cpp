#include "MenuKeyboard.h"

#include "MenuLevels.h"
#include "MenuText.h"

#include <QKeyEvent>

#include <algorithm>
#include <chrono>

namespace quillbox {

namespace {
    // A letter that is typed after such a pause begins another name.
    constexpr std::chrono::milliseconds kTypingPause { 1000 };
} // namespace

bool MenuKeyboard::pressed(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Escape:
        levels_.closeToCount(levels_.count() - 1);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Select:
        activateSelected(choiceFor(event.modifiers()));
        return true;
    case Qt::Key_Space:
        // A name may contain spaces.
        if (!typed_.isEmpty())
            return type(event);
        activateSelected(choiceFor(event.modifiers()));
        return true;
    case Qt::Key_Menu:
        openItemMenu();
        return true;
    case Qt::Key_F10:
        if (event.modifiers() & Qt::ShiftModifier)
            openItemMenu();
        return true;
    default:
        return walk(event.key()) || enterOrLeave(event.key()) || type(event);
    }
}

bool MenuKeyboard::walk(int key)
{
    const MenuPopup& popup = levels_.popup(levels_.activeLevel());
    const std::size_t last = popup.rowCount() - 1;
    const std::size_t here = popup.selection().value_or(0);
    switch (key) {
    case Qt::Key_Down:
    case Qt::Key_Tab:
        step(1);
        break;
    case Qt::Key_Up:
    case Qt::Key_Backtab:
        step(-1);
        break;
    case Qt::Key_Home:
        selectNear(0, 1);
        break;
    case Qt::Key_End:
        selectNear(last, -1);
        break;
    case Qt::Key_PageDown:
        selectNear(popup.rows().pageAfter(here), 1);
        break;
    case Qt::Key_PageUp:
        selectNear(popup.rows().pageBefore(here), -1);
        break;
    default:
        return false;
    }
    typed_.clear();
    return true;
}

bool MenuKeyboard::enterOrLeave(int key)
{
    if (key != Qt::Key_Left && key != Qt::Key_Right)
        return false;
    typed_.clear();
    const std::size_t level = levels_.activeLevel();
    const bool isForward = (key == Qt::Key_Right) == (levels_.popup(level).layoutDirection() != Qt::RightToLeft);
    if (isForward)
        openSelected();
    else if (levels_.count() > 1)
        // If the last submenu has no selection, because the pointer opened it, it is closed before the level that has
        // one.
        levels_.closeToCount(levels_.count() - 1);
    return true;
}

void MenuKeyboard::step(int direction)
{
    const MenuPopup& popup = levels_.popup(levels_.activeLevel());
    const std::size_t last = popup.rowCount() - 1;
    const std::size_t end = direction > 0 ? 0 : last;
    std::optional<std::size_t> next;
    if (!popup.selection()) {
        // In a list that was scrolled with the wheel, the keys continue from the first visible row.
        const bool isDown = direction > 0 && !popup.rows().visibleRows().empty();
        next = selectableFrom(isDown ? popup.rows().visibleRows().front().row : end, direction);
    } else if (*popup.selection() != last - end) {
        next = selectableFrom(*popup.selection() + static_cast<std::size_t>(direction), direction);
    }
    if (!next)
        next = selectableFrom(end, direction);
    if (next)
        selectRow(*next);
}

void MenuKeyboard::selectNear(std::size_t row, int direction)
{
    std::optional<std::size_t> near = selectableFrom(row, direction);
    if (!near)
        near = selectableFrom(row, -direction);
    if (near)
        selectRow(*near);
}

void MenuKeyboard::selectRow(std::size_t row)
{
    const std::size_t level = levels_.activeLevel();
    levels_.closeToCount(level + 1);
    levels_.popup(level).bringIntoSight(row);
    levels_.select(level, row);
}

void MenuKeyboard::openSelected()
{
    const std::size_t level = levels_.activeLevel();
    const std::optional<std::size_t> row = levels_.popup(level).selection();
    if (!row)
        return;
    // The submenu is placed beside its row, which must be visible.
    levels_.popup(level).bringIntoSight(*row);
    levels_.openSubmenu(level, *row);
    if (levels_.openRow(level) != row)
        return;
    selectFirstOf(level + 1);
}

void MenuKeyboard::openItemMenu()
{
    typed_.clear();
    const std::size_t level = levels_.activeLevel();
    const std::optional<std::size_t> row = levels_.popup(level).selection();
    if (!row)
        return;
    levels_.popup(level).bringIntoSight(*row);
    // Below the row, where the pointer would be if it had asked: the row itself stays visible.
    if (levels_.openItemMenu(level, *row, levels_.popup(level).rowRect(*row)))
        selectFirstOf(level + 1);
}

void MenuKeyboard::selectFirstOf(std::size_t level)
{
    MenuPopup& popup = levels_.popup(level);
    for (std::size_t first = 0; first < popup.rowCount(); ++first)
        if (popup.isSelectable(first)) {
            popup.bringIntoSight(first);
            levels_.select(level, first);
            return;
        }
}

void MenuKeyboard::activateSelected(MenuTracking::Choice choice)
{
    const std::size_t level = levels_.activeLevel();
    const std::optional<std::size_t> row = levels_.popup(level).selection();
    if (!row)
        return;
    if (levels_.popup(level).item(*row)->action())
        levels_.activate(level, *row, choice);
    else
        openSelected();
}

bool MenuKeyboard::type(const QKeyEvent& event)
{
    const QString text = event.text();
    if (text.isEmpty() || !text.front().isPrint()
        || (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)))
        return false;
    typed_ += text;
    typedTimer_ = Clock::current().after(kTypingPause, [this] { typed_.clear(); });

    const MenuPopup& popup = levels_.popup(levels_.activeLevel());
    const std::size_t count = popup.rowCount();
    const std::size_t here = popup.selection().value_or(0);
    const auto find = [&](const QString& name, std::size_t from) -> std::optional<std::size_t> {
        const TitlePrefix prefix(name);
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t row = (from + i) % count;
            if (prefix.matches(*popup.item(row)) && popup.isSelectable(row))
                return row;
        }
        return std::nullopt;
    };
    // The first letter of a name looks for the next such row; further letters may still mean the present one.
    const bool isNewName = typed_.size() == text.size();
    std::optional<std::size_t> row = find(typed_, isNewName && popup.selection() ? here + 1 : here);
    // The same letter again and again steps through the rows that begin with it.
    if (!row && typed_.size() > 1 && typed_.count(typed_.front()) == typed_.size())
        row = find(typed_.left(1), here + 1);
    if (row)
        selectRow(*row);
    return true;
}

std::optional<std::size_t> MenuKeyboard::selectableFrom(std::size_t row, int direction) const
{
    const MenuPopup& popup = levels_.popup(levels_.activeLevel());
    for (std::size_t at = row; at < popup.rowCount(); at += static_cast<std::size_t>(direction))
        if (popup.isSelectable(at))
            return at;
    return std::nullopt;
}

} // namespace quillbox
