// Dragging rows out of the list, within it and into it.

#include "TentativeMenuItemsTable.h"

#include "GlobalVars.h"
#include "TentativeMenuItemsTablePasteboardWriter.h"

#include <algorithm>

namespace quillbox {

namespace {

    bool isConsecutive(const std::vector<int>& rows)
    {
        return std::adjacent_find(rows.begin(), rows.end(), [](int row, int next) { return next != row + 1; })
            == rows.end();
    }

} // namespace

std::shared_ptr<NSPasteboardWriting> TentativeMenuItemsTable::pasteboardWriterForRow(NSTableView&, int row)
{
    if (row < 1)
        return nullptr;
    const auto& item = tentativeMenuItems[static_cast<std::size_t>(row)];
    auto writer = std::make_shared<TentativeMenuItemsTablePasteboardWriter>(row, item->displayString);
    writer->item = item;
    writer->table = std::static_pointer_cast<TentativeMenuItemsTable>(shared_from_this());
    return writer;
}

std::vector<int> TentativeMenuItemsTable::rowsOfDrag(const NSPasteboard& pasteboard) const
{
    std::vector<int> rows;
    for (const NSPasteboardItem& dragged : pasteboard.items()) {
        const auto* writer = dynamic_cast<const TentativeMenuItemsTablePasteboardWriter*>(dragged.writer().get());
        const auto item = writer ? writer->item.lock() : nullptr;
        if (!item || writer->table.lock().get() != this)
            continue;
        // In most cases the row is still where it was.
        const auto row = static_cast<std::size_t>(writer->rowNumber);
        if (row < tentativeMenuItems.size() && tentativeMenuItems[row] == item) {
            rows.push_back(writer->rowNumber);
            continue;
        }
        const auto found = std::find(tentativeMenuItems.begin(), tentativeMenuItems.end(), item);
        if (found != tentativeMenuItems.end())
            rows.push_back(static_cast<int>(found - tentativeMenuItems.begin()));
    }
    return rows;
}

NSDragOperation TentativeMenuItemsTable::validateDrop(NSTableView&, const NSDraggingInfo& info, int row,
                                                      DropOperation dropOperation)
{
    if (dropOperation != DropOperation::above || info.draggingPasteboard.items().empty() || row < 1)
        return NSDragOperation::none;
    if (!info.draggingPasteboard.hasType(GlobalVars::tentativeMenuItemPasteboardType()))
        return NSDragOperation::copy;
    const std::vector<int> dragged = rowsOfDrag(info.draggingPasteboard);
    if (dragged.empty())
        return NSDragOperation::none;
    // A drop that leaves the rows where they are is refused.
    if (isConsecutive(dragged) && dragged.front() <= row && row <= dragged.back() + 1)
        return NSDragOperation::none;
    return NSDragOperation::move;
}

bool TentativeMenuItemsTable::acceptDrop(NSTableView&, const NSDraggingInfo& info, int row, DropOperation)
{
    const NSPasteboard& pasteboard = info.draggingPasteboard;
    if (pasteboard.items().empty())
        return false;
    if (pasteboard.hasType(GlobalVars::tentativeMenuItemPasteboardType())) {
        std::vector<int> dragged = rowsOfDrag(pasteboard);
        if (dragged.empty())
            return false;
        std::sort(dragged.begin(), dragged.end());
        moveItems(dragged, row);
        return true;
    }
    return addSuggestedItems(pasteboard, row) || addFiles(pasteboard, row);
}

void TentativeMenuItemsTable::moveItems(const std::vector<int>& rows, int aboveRow)
{
    const auto above = std::lower_bound(rows.begin(), rows.end(), aboveRow) - rows.begin();
    const auto target = static_cast<std::size_t>(aboveRow - above);
    MainMenuItem::List moved;
    moved.reserve(tentativeMenuItems.size());
    for (std::size_t index = 0; index <= tentativeMenuItems.size(); ++index) {
        if (moved.size() == target) {
            for (const int row : rows)
                moved.push_back(tentativeMenuItems[static_cast<std::size_t>(row)]);
        }
        if (index < tentativeMenuItems.size() && !std::binary_search(rows.begin(), rows.end(), static_cast<int>(index)))
            moved.push_back(tentativeMenuItems[index]);
    }
    changeList(std::move(moved), Animation::gap);
}

bool TentativeMenuItemsTable::addSuggestedItems(const NSPasteboard& pasteboard, int row)
{
    std::vector<MenuItemType> kinds;
    for (const PropertyList& value : pasteboard.propertyLists(GlobalVars::suggestedMenuItemPasteboardType())) {
        const auto* text = value.as<std::string>();
        if (const auto kind = text ? menuItemType(*text) : std::nullopt)
            kinds.push_back(*kind);
    }
    return insertKinds(kinds, row);
}

bool TentativeMenuItemsTable::insertKinds(const std::vector<MenuItemType>& kinds, int row)
{
    MainMenuItem::List items;
    bool isToPickFiles = false;
    for (const MenuItemType kind : kinds) {
        if (kind == MenuItemType::arbitraryPath) {
            isToPickFiles = true;
            continue;
        }
        MenuOptionFlagsSv options;
        if (kind == MenuItemType::plaintext)
            options = menuOptionFlagsSv::showPlaintextAsDisabled;
        items.push_back(std::make_shared<MainMenuItem>(kind, std::nullopt, std::nullopt, std::nullopt, options));
    }
    if (isToPickFiles)
        beginPickingFiles(row);
    if (items.empty())
        return false;
    insertMenuItems(items, row);
    return true;
}

} // namespace quillbox
