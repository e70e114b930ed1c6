#include "MenuKeyboard.h"

#include "MenuLevels.h"
#include "MenuText.h"
#include "NarrowingLine.h"

#include <QKeyEvent>

#include <algorithm>
#include <chrono>

namespace quillbox {

namespace {
    // A letter that is typed after such a pause begins another name.
    constexpr std::chrono::milliseconds kTypingPause { 1000 };
} // namespace

bool MenuKeyboard::pressed(QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Escape:
        leave();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Select:
        activateSelected(choiceFor(event.modifiers()));
        return true;
    case Qt::Key_Space:
        // A name may contain spaces.
        if (!typed_.isEmpty() || levels_.popup(levels_.activeLevel()).line())
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
        return walk(event.key()) || enterOrLeave(event.key()) || beginsNarrowing(event) || type(event);
    }
}

bool MenuKeyboard::walk(int key)
{
    const MenuPopup& popup = levels_.popup(levels_.activeLevel());
    if (popup.rowCount() == 0)
        return false;
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

// Shows all rows of a narrowed level, or closes the last level.
void MenuKeyboard::leave()
{
    const std::size_t last = levels_.count() - 1;
    if (levels_.activeLevel() == last && levels_.popup(last).line())
        levels_.endNarrowing(last);
    else
        levels_.closeToCount(last);
}

bool MenuKeyboard::beginsNarrowing(const QKeyEvent& event)
{
    const std::size_t level = levels_.activeLevel();
    const MenuPopup& popup = levels_.popup(level);
    const bool isSlash = event.text() == QStringLiteral("/");
    const bool isFind = event.key() == Qt::Key_F && event.modifiers() == Qt::ControlModifier;
    if ((!isSlash && !isFind) || levels_.isInItemMenu(level) || (isSlash && popup.line()))
        return false;
    // A title that has been typed so far may go on with a slash.
    if (isSlash && !typed_.isEmpty() && findTitle(typed_ + event.text(), popup.selection().value_or(0)))
        return false;
    typed_.clear();
    levels_.beginNarrowing(level);
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

bool MenuKeyboard::type(QKeyEvent& event)
{
    const std::size_t level = levels_.activeLevel();
    if (NarrowingLine* line = levels_.popup(level).line()) {
        if (event.key() != Qt::Key_Backspace || !line->text().isEmpty())
            return line->type(event);
        levels_.endNarrowing(level);
        return true;
    }
    const QString text = event.text();
    if (text.isEmpty() || !text.front().isPrint()
        || (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)))
        return false;
    typed_ += text;
    typedTimer_ = Clock::current().after(kTypingPause, [this] { typed_.clear(); });

    const MenuPopup& popup = levels_.popup(level);
    const std::size_t here = popup.selection().value_or(0);
    // The first letter of a name looks for the next such row; further letters may still mean the present one.
    const bool isNewName = typed_.size() == text.size();
    std::optional<std::size_t> row = findTitle(typed_, isNewName && popup.selection() ? here + 1 : here);
    // The same letter again and again steps through the rows that begin with it.
    if (!row && typed_.size() > 1 && typed_.count(typed_.front()) == typed_.size())
        row = findTitle(typed_.left(1), here + 1);
    if (row)
        selectRow(*row);
    return true;
}

std::optional<std::size_t> MenuKeyboard::findTitle(const QString& name, std::size_t from) const
{
    const MenuPopup& popup = levels_.popup(levels_.activeLevel());
    const std::size_t count = popup.rowCount();
    const TitlePrefix prefix(name);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t row = (from + i) % count;
        if (prefix.matches(*popup.item(row)) && popup.isSelectable(row))
            return row;
    }
    return std::nullopt;
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
