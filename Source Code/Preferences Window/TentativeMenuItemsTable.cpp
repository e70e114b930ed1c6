#include "TentativeMenuItemsTable.h"

#include "Debug.h"
#include "GlobalVars.h"
#include "MenuItemEditorVC.h"
#include "NSButtonPlusCursor.h"
#include "NSOpenPanel.h"
#include "NSTextField.h"
#include "NSWindow.h"
#include "PreferencesWindowVC.h"

#include <algorithm>

namespace quillbox {

namespace {

    using Table = TentativeMenuItemsTable;

    const Selector handleEditMenuItemButtonSelector =
        makeSelector<&Table::handleEditMenuItemButton>("handleEditMenuItemButtonWithSender:");
    const Selector doubleClickTableRowSelector = makeSelector<&Table::doubleClickTableRow>("doubleClickTableRow");

    void logError(int line, std::string_view function, const std::string& message)
    {
        Debug::addErrorLogEntry("TentativeMenuItemsTable", function, __FILE__, line, false, message);
    }

    // The rows of this table that a drag carries, in its order; empty for a drag from elsewhere.
    std::vector<int> draggedRowNumbers(const NSPasteboard& pasteboard)
    {
        std::vector<int> rows;
        for (const PropertyList& value : pasteboard.propertyLists(GlobalVars::tentativeMenuItemPasteboardType())) {
            if (const auto row = value.asInt64())
                rows.push_back(static_cast<int>(*row));
        }
        return rows;
    }

    bool isConsecutive(const std::vector<int>& rows)
    {
        return std::adjacent_find(rows.begin(), rows.end(), [](int row, int next) { return next != row + 1; })
            == rows.end();
    }

    std::string displayString(const URL& url)
    {
        const auto values = url.resourceValues(URLResourceKey::isVolume | URLResourceKey::volumeLocalizedName);
        if (values && values->isVolume.value_or(false))
            return values->volumeLocalizedName.value_or("Volume Root");
        return std::string(path::lastPathComponent(url.path()));
    }

} // namespace

std::shared_ptr<TentativeMenuItemsTable> Table::create(const std::shared_ptr<NSScrollView>& scrollView)
{
    auto table = std::make_shared<Table>();
    table->tentativeMenuItems = MainMenuItem::actualMenuItems();
    if (scrollView)
        table->scrollViewContentView = scrollView->contentView();
    table->setUsesAlternatingRowBackgroundColors(false);
    table->setAllowsMultipleSelection(true);
    table->setTarget(table, nullptr);
    table->setDoubleAction(&doubleClickTableRowSelector);
    table->setDelegate(table);
    table->setDataSource(table);
    table->setDraggingSourceOperationMaskOutside(NSDragOperation::copy);
    table->registerForDraggedTypes({ GlobalVars::suggestedMenuItemPasteboardType(),
                                     GlobalVars::tentativeMenuItemPasteboardType(), NSPasteboardTypeFileURL });
    table->addTableColumn({ "col0 identifier", "Quillbox Items" });
    return table;
}

void Table::enableSaving()
{
    if (const auto button = savePreferencesButton.lock())
        button->setEnabled(true);
}

// Rows

int Table::numberOfRows(NSTableView&)
{
    return static_cast<int>(tentativeMenuItems.size());
}

std::shared_ptr<NSView> Table::viewForRow(NSTableView&, int row)
{
    if (static_cast<std::size_t>(row) >= tentativeMenuItems.size()) {
        auto label = NSTextField::label("error: rowNum=" + std::to_string(row) + " is past the table size ("
                                        + std::to_string(tentativeMenuItems.size()) + ")");
        label->setTextColor(CGColor::systemRed);
        return label;
    }
    const MainMenuItem& item = *tentativeMenuItems[static_cast<std::size_t>(row)];
    const bool isSeparator = item.menuItemType == MenuItemType::separator;
    auto container = std::make_shared<NSView>();
    if (const auto button = isSeparator ? nullptr : makeEditButton(item, row)) {
        container->addSubview(button);
        NSLayoutConstraint::activate({
            button->leftAnchor().constraintEqualTo(container->leftAnchor()),
            button->widthAnchor().constraintEqualToConstant(16),
            button->centerYAnchor().constraintEqualTo(container->centerYAnchor()),
        });
    }
    const auto text = NSTextField::label(rowTitle(item));
    text->setMaximumNumberOfLines(1);
    text->setTranslatesAutoresizingMaskIntoConstraints(false);
    container->addSubview(text);
    NSLayoutConstraint::activate({
        text->leftAnchor().constraintEqualTo(container->leftAnchor(), isSeparator ? 0 : 24),
        text->rightAnchor().constraintEqualTo(container->rightAnchor()),
        text->centerYAnchor().constraintEqualTo(container->centerYAnchor()),
    });
    return container;
}

std::shared_ptr<NSButton> Table::makeEditButton(const MainMenuItem& item, int row)
{
    auto image = NSImage::imageNamed(NSImageNameInfo);
    if (!image)
        return nullptr;
    // As large as the button is wide.
    image->setSize({ 16, 16 });
    auto button = std::make_shared<NSButtonPlusCursor>(NSCursor::pointingHand);
    button->setButtonType(NSButton::ButtonType::momentaryPushIn);
    button->setTitle(item.displayString);
    button->setAccessibilityLabel("Settings of " + rowTitle(item));
    button->setImage(std::move(image));
    button->setImagePosition(NSButton::ImagePosition::imageOnly);
    button->setImageScaling(NSButton::ImageScaling::proportionallyUpOrDown);
    button->setBordered(false);
    button->setTarget(shared_from_this(), &handleEditMenuItemButtonSelector);
    button->setTag(row);
    button->scrollViewContentView = scrollViewContentView;
    button->setTranslatesAutoresizingMaskIntoConstraints(false);
    return button;
}

std::string Table::rowTitle(const MainMenuItem& item)
{
    if (!item.displayString.empty())
        return item.displayString;
    if (const MainMenuItem::Info* info = MainMenuItem::menuItemInfo(item.menuItemType))
        return info->displayString;
    logError(__LINE__, "tableView(_:viewFor:row:)",
             "this menu item didn't have a default text string: \"thisMenuItem.menuItemType\"");
    return "(SuggestedMenuItemsTable didn't have any info for " + std::string(rawValue(item.menuItemType)) + ")";
}

// Editing an item

void Table::handleEditMenuItemButton(NSButton* sender)
{
    QB_CHECK(sender);
    editMenuItemProperties(sender->tag());
}

void Table::editMenuItemProperties(int rowNum)
{
    if (rowNum < 0)
        return;
    if (static_cast<std::size_t>(rowNum) >= tentativeMenuItems.size()) {
        logError(__LINE__, "editMenuItemProperties(rowNum:)",
                 "tentativeMenuItems only has " + std::to_string(tentativeMenuItems.size())
                     + " rows, but rowNum=" + std::to_string(rowNum) + " is somehow being edited?");
        return;
    }
    const auto& item = tentativeMenuItems[static_cast<std::size_t>(rowNum)];
    const auto parent = window();
    if (item->menuItemType == MenuItemType::separator || !parent || parent->attachedSheet())
        return;
    const auto sheet = MenuItemEditorVC::create(item)->view()->window();
    if (!sheet)
        return;
    parent->beginSheet(sheet, [self = std::weak_ptr(shared_from_this()), rowNum](NSModalResponse response) {
        const auto table = std::dynamic_pointer_cast<Table>(self.lock());
        if (!table)
            return;
        if (response == NSModalResponseOK)
            table->enableSaving();
        table->reloadData(rowNum, 0);
    });
}

// Dragging

std::shared_ptr<NSPasteboardWriting> Table::pasteboardWriterForRow(NSTableView&, int row)
{
    if (row < 1)
        return nullptr;
    return std::make_shared<TentativeMenuItemsTablePasteboardWriter>(
        row, tentativeMenuItems[static_cast<std::size_t>(row)]->displayString);
}

NSDragOperation Table::validateDrop(NSTableView&, const NSDraggingInfo& info, int row, DropOperation dropOperation)
{
    if (dropOperation != DropOperation::above || info.draggingPasteboard.items().empty() || row < 1)
        return NSDragOperation::none;
    const std::vector<int> dragged = draggedRowNumbers(info.draggingPasteboard);
    if (dragged.empty())
        return NSDragOperation::copy;
    // A block that would land where it is.
    if (isConsecutive(dragged) && dragged.front() <= row && row <= dragged.back() + 1)
        return NSDragOperation::none;
    return NSDragOperation::move;
}

bool Table::acceptDrop(NSTableView&, const NSDraggingInfo& info, int row, DropOperation)
{
    const NSPasteboard& pasteboard = info.draggingPasteboard;
    if (pasteboard.items().empty())
        return false;
    if (std::vector<int> dragged = draggedRowNumbers(pasteboard); !dragged.empty()) {
        std::sort(dragged.begin(), dragged.end());
        moveItems(dragged, row);
        animateMove(dragged, row);
        enableSaving();
        return true;
    }
    return addSuggestedItems(pasteboard, row) || addFiles(pasteboard, row);
}

void Table::moveItems(const std::vector<int>& draggedRows, int aboveRow)
{
    const auto above = std::lower_bound(draggedRows.begin(), draggedRows.end(), aboveRow) - draggedRows.begin();
    const auto target = static_cast<std::size_t>(aboveRow - above);
    MainMenuItem::List moved;
    moved.reserve(tentativeMenuItems.size());
    for (std::size_t index = 0; index <= tentativeMenuItems.size(); ++index) {
        if (moved.size() == target) {
            for (const int row : draggedRows)
                moved.push_back(tentativeMenuItems[static_cast<std::size_t>(row)]);
        }
        if (index < tentativeMenuItems.size()
            && !std::binary_search(draggedRows.begin(), draggedRows.end(), static_cast<int>(index)))
            moved.push_back(tentativeMenuItems[index]);
    }
    tentativeMenuItems = std::move(moved);
}

void Table::animateMove(std::vector<int> draggedRows, int aboveRow)
{
    int row = aboveRow;
    if (draggedRows.size() == 1) {
        moveRow(draggedRows[0], draggedRows[0] < row ? row - 1 : row);
        return;
    }
    // Rows keep their selection on the way. First they come together, then the block moves.
    for (std::size_t k = 0; k + 1 < draggedRows.size(); ++k) {
        const int next = draggedRows[k] + 1;
        if (draggedRows[k + 1] == next)
            continue;
        if (next < row && row <= draggedRows[k + 1])
            ++row;
        moveRow(draggedRows[k + 1], next);
        draggedRows[k + 1] = next;
    }
    for (std::size_t count = 0; count < draggedRows.size(); ++count) {
        if (draggedRows.front() < row)
            moveRow(draggedRows.front(), row - 1);
        else
            moveRow(draggedRows.back(), row);
    }
    reloadData();
}

bool Table::addSuggestedItems(const NSPasteboard& pasteboard, int row)
{
    MainMenuItem::List items;
    bool isToPickFiles = false;
    for (const PropertyList& value : pasteboard.propertyLists(GlobalVars::suggestedMenuItemPasteboardType())) {
        const auto* text = value.as<std::string>();
        const auto kind = text ? menuItemType(*text) : std::nullopt;
        if (!kind)
            continue;
        if (*kind == MenuItemType::arbitraryPath) {
            isToPickFiles = true;
            continue;
        }
        MenuOptionFlagsSv options;
        if (*kind == MenuItemType::plaintext)
            options = menuOptionFlagsSv::showPlaintextAsDisabled;
        items.push_back(std::make_shared<MainMenuItem>(*kind, std::nullopt, std::nullopt, std::nullopt, options));
    }
    if (isToPickFiles)
        beginPickingFiles(row);
    if (items.empty())
        return false;
    insertMenuItems(items, row);
    enableSaving();
    return true;
}

bool Table::addFiles(const NSPasteboard& pasteboard, int row)
{
    const auto urls = pasteboard.urls();
    if (!urls)
        return false;
    if (const auto preferences = PreferencesWindowVC::preferencesWindow().lock())
        preferences->orderFrontRegardless();
    const MainMenuItem::List items = menuItemsFromURLs(*urls);
    if (items.empty())
        return false;
    insertMenuItems(items, row);
    enableSaving();
    return true;
}

void Table::beginPickingFiles(int row)
{
    const auto parent = window();
    if (!parent)
        return;
    const auto panel = std::make_shared<NSOpenPanel>();
    panel->setMessage("Select a File or Directory to Add to the Quillbox");
    panel->setPrompt("Add This Item");
    panel->setDirectoryURL(FileManager::defaultManager().homeDirectoryForCurrentUser());
    panel->setCanChooseFiles(true);
    panel->setCanChooseDirectories(true);
    panel->setResolvesAliases(true);
    panel->setAllowsMultipleSelection(true);
    panel->beginSheetModal(*parent, [self = std::weak_ptr(shared_from_this()), panel, row](NSModalResponse response) {
        const auto table = std::dynamic_pointer_cast<Table>(self.lock());
        if (!table || response != NSModalResponseOK)
            return;
        if (panel->urls().empty()) {
            logError(__LINE__, "tableView(_:acceptDrop:row:dropOperation:)",
                     "filePicker returned \"OK\", but filePicker.url[] is empty?");
            return;
        }
        const MainMenuItem::List items = menuItemsFromURLs(panel->urls());
        if (items.empty())
            return;
        // The list may have become shorter meanwhile.
        table->insertMenuItems(items, std::min(row, table->numberOfRows(*table)));
        table->enableSaving();
    });
}

// Changing the list

void Table::insertMenuItems(const MainMenuItem::List& items, int atRow)
{
    tentativeMenuItems.insert(tentativeMenuItems.begin() + atRow, items.begin(), items.end());
    insertRows({ static_cast<std::size_t>(atRow), items.size() }, Animation::slideDown);
}

MainMenuItem::List Table::menuItemsFromURLs(const std::vector<URL>& urls)
{
    MainMenuItem::List items;
    items.reserve(urls.size());
    for (const URL& url : urls)
        items.push_back(
            std::make_shared<MainMenuItem>(MenuItemType::arbitraryPath, displayString(url), url.path(), url));
    return items;
}

void Table::deleteMenuItems(std::vector<int> rowNums)
{
    if (tentativeMenuItems.empty() || rowNums.empty())
        return;
    const std::set<int> rows(rowNums.begin(), rowNums.end());
    if (*rows.begin() < 0 || static_cast<std::size_t>(*rows.rbegin()) >= tentativeMenuItems.size()) {
        logError(__LINE__, "deleteMenuItems(rowNums:)",
                 "TentativeMenuItemsTable.deleteMenuItems(rowNums:)() was asked to delete a rowNum from "
                 "tentativeMenuItems that doesn't exist");
        return;
    }
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        tentativeMenuItems.erase(tentativeMenuItems.begin() + *row);
    removeRows(rows, Animation::slideUp);
    enableSaving();
}

void Table::deleteBackward()
{
    std::vector<int> rows(selectedRowIndexes().begin(), selectedRowIndexes().end());
    std::erase(rows, 0);
    deleteMenuItems(std::move(rows));
}

std::vector<std::string> TentativeMenuItemsTablePasteboardWriter::writableTypes() const
{
    return { GlobalVars::tentativeMenuItemPasteboardType(), NSPasteboardTypeString };
}

std::optional<PropertyList>
TentativeMenuItemsTablePasteboardWriter::pasteboardPropertyList(const std::string& forType) const
{
    if (forType == GlobalVars::tentativeMenuItemPasteboardType())
        return std::int64_t { rowNumber };
    if (forType == NSPasteboardTypeString)
        return stringToDrop;
    return std::nullopt;
}

} // namespace quillbox
