// Changing the list with the keyboard and with assistive technology.

#include "TentativeMenuItemsTable.h"

#include "NSWindow.h"

#include <algorithm>

namespace quillbox {

bool TentativeMenuItemsTable::canPerform(Command command, int row) const
{
    const int count = static_cast<int>(tentativeMenuItems.size());
    if (row < 0 || row >= count)
        return false;
    switch (command) {
    case Command::settings:
        return tentativeMenuItems[static_cast<std::size_t>(row)]->menuItemType != MenuItemType::separator;
    case Command::moveUp:
        return row > 1;
    case Command::moveDown:
        return row > 0 && row + 1 < count;
    case Command::remove:
        return row > 0;
    case Command::add:
        break;
    }
    return false;
}

void TentativeMenuItemsTable::perform(Command command, const std::set<int>& rows)
{
    switch (command) {
    case Command::settings:
        editMenuItemProperties(rows.contains(leadRow()) ? leadRow() : *rows.begin());
        break;
    case Command::moveUp:
    case Command::moveDown:
        moveByOne(rows, command == Command::moveUp);
        break;
    case Command::remove: {
        std::vector<int> removed(rows.begin(), rows.end());
        const int first = removed.front();
        const std::size_t count = removed.size();
        deleteMenuItems(std::move(removed));
        // The selection goes to the row that moved up into the place of the first removed one.
        selectRowIndexes({ std::min(first, static_cast<int>(tentativeMenuItems.size()) - 1) }, false);
        announce(count == 1 ? "Removed" : "Removed " + std::to_string(count) + " items");
        break;
    }
    case Command::add:
        break;
    }
}

void TentativeMenuItemsTable::moveByOne(const std::set<int>& rows, bool up)
{
    MainMenuItem::List list = tentativeMenuItems;
    const auto before = list;
    // The outermost row that is still free. Rows that are already at the end stay there.
    int room = up ? 1 : static_cast<int>(list.size()) - 1;
    const auto move = [&](int row) {
        if (row == room) {
            room += up ? 1 : -1;
            return;
        }
        std::swap(list[static_cast<std::size_t>(row)], list[static_cast<std::size_t>(up ? row - 1 : row + 1)]);
    };
    const std::vector<int> movable(rows.upper_bound(0), rows.end());
    if (up)
        std::for_each(movable.begin(), movable.end(), move);
    else
        std::for_each(movable.rbegin(), movable.rend(), move);
    if (list == before)
        return;
    changeList(std::move(list), Animation::gap);
    if (leadRow() >= 0)
        scrollRowToVisible(leadRow());
    announce(up ? "Moved up" : "Moved down");
}

int TentativeMenuItemsTable::rowForNewItems() const
{
    return selectedRowIndexes().empty() ? static_cast<int>(tentativeMenuItems.size())
                                        : *selectedRowIndexes().rbegin() + 1;
}

void TentativeMenuItemsTable::selectNewRows(const MainMenuItem::List& before)
{
    const std::set<std::shared_ptr<MainMenuItem>> known(before.begin(), before.end());
    std::set<int> rows;
    for (std::size_t row = 0; row < tentativeMenuItems.size(); ++row) {
        if (!known.contains(tentativeMenuItems[row]))
            rows.insert(static_cast<int>(row));
    }
    if (rows.empty())
        return;
    const int last = *rows.rbegin();
    selectRowIndexes(std::move(rows), false);
    if (const auto shownIn = window())
        shownIn->layoutIfNeeded();
    scrollRowToVisible(last);
}

void TentativeMenuItemsTable::addKinds(const std::vector<MenuItemType>& kinds)
{
    const MainMenuItem::List before = tentativeMenuItems;
    if (insertKinds(kinds, rowForNewItems()))
        selectNewRows(before);
}

void TentativeMenuItemsTable::paste(const NSPasteboard& pasteboard)
{
    const MainMenuItem::List before = tentativeMenuItems;
    if (isHeld() || pasteboard.items().empty() || !addFiles(pasteboard, rowForNewItems()))
        return;
    selectNewRows(before);
    announce("Added " + std::to_string(tentativeMenuItems.size() - before.size()));
}

void TentativeMenuItemsTable::restoreList(const MainMenuItem::List& list)
{
    const MainMenuItem::List before = tentativeMenuItems;
    changeList(list, Animation::gap);
    selectNewRows(before);
}

} // namespace quillbox
