#include "TentativeMenuItemsTable.h"

#include "Check.h"
#include "Debug.h"
#include "GlobalVars.h"
#include "MenuItemEditorVC.h"
#include "NSButtonPlusCursor.h"
#include "NSOpenPanel.h"
#include "NSTextField.h"
#include "NSWindow.h"
#include "PreferencesWindowVC.h"
#include "TentativeMenuItemsTablePasteboardWriter.h"

#include <algorithm>
#include <set>
#include <unordered_map>

namespace quillbox {

namespace {

    const Selector kHandleEditMenuItemButtonSelector =
        makeSelector<&TentativeMenuItemsTable::handleEditMenuItemButton>("handleEditMenuItemButtonWithSender:");
    const Selector kDoubleClickTableRowSelector =
        makeSelector<&TentativeMenuItemsTable::doubleClickTableRow>("doubleClickTableRow");

    // Points, from a row's left edge.
    constexpr double kTitleAt = 24;

    void logError(int line, std::string_view function, const std::string& message)
    {
        Debug::addErrorLogEntry("TentativeMenuItemsTable", function, __FILE__, line, false, message);
    }

    std::string displayString(const URL& url)
    {
        const auto values = url.resourceValues(URLResourceKey::isVolume | URLResourceKey::volumeLocalizedName);
        if (values && values->isVolume.value_or(false))
            return values->volumeLocalizedName.value_or("Volume Root");
        return std::string(path::lastPathComponent(url.path()));
    }

} // namespace

std::shared_ptr<TentativeMenuItemsTable>
TentativeMenuItemsTable::create(const std::shared_ptr<NSScrollView>& scrollView)
{
    auto table = std::make_shared<TentativeMenuItemsTable>();
    table->tentativeMenuItems = MainMenuItem::actualMenuItems();
    if (scrollView)
        table->scrollViewContentView = scrollView->contentView();
    table->setAllowsMultipleSelection(true);
    table->setTarget(table, nullptr);
    table->setDoubleAction(&kDoubleClickTableRowSelector);
    table->setDelegate(table);
    table->setDataSource(table);
    table->setDraggingSourceOperationMaskOutside(NSDragOperation::copy);
    table->registerForDraggedTypes({ GlobalVars::suggestedMenuItemPasteboardType(),
                                     GlobalVars::tentativeMenuItemPasteboardType(), NSPasteboardTypeFileURL });
    table->addTableColumn({ "col0 identifier", "Quillbox Items" });
    return table;
}

void TentativeMenuItemsTable::enableSaving()
{
    if (const auto button = savePreferencesButton.lock())
        button->setEnabled(true);
}

// Rows

NSSize TentativeMenuItemsTable::leastSize() const
{
    const MainMenuItem fixed(MenuItemType::fixedAppPreferences);
    const NSSize title = NSTextField::label(fixed.displayString)->naturalSize(kNoWidthLimit);
    return { title.width + kTitleAt + 2 * kCellInset, 0 };
}

int TentativeMenuItemsTable::numberOfRows(NSTableView&)
{
    return static_cast<int>(tentativeMenuItems.size());
}

std::shared_ptr<NSView> TentativeMenuItemsTable::viewForRow(NSTableView&, int row)
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
    if (isSeparator)
        text->setAccessibilityLabel("Separator");
    text->setTranslatesAutoresizingMaskIntoConstraints(false);
    container->addSubview(text);
    NSLayoutConstraint::activate({
        text->leftAnchor().constraintEqualTo(container->leftAnchor(), isSeparator ? 0 : kTitleAt),
        text->rightAnchor().constraintEqualTo(container->rightAnchor()),
        text->centerYAnchor().constraintEqualTo(container->centerYAnchor()),
    });
    return container;
}

void TentativeMenuItemsTable::rowViewDidMove(NSTableView&, NSView& view, int row)
{
    for (const auto& subview : view.subviews()) {
        if (const auto button = std::dynamic_pointer_cast<NSButtonPlusCursor>(subview))
            button->setTag(row);
    }
}

std::shared_ptr<NSButton> TentativeMenuItemsTable::makeEditButton(const MainMenuItem& item, int row)
{
    auto image = NSImage::imageNamed(NSImageNameInfo);
    if (!image)
        return nullptr;
    // The image is as large as the button is wide.
    image->setSize({ 16, 16 });
    auto button = std::make_shared<NSButtonPlusCursor>(NSCursor::pointingHand);
    button->setButtonType(NSButton::ButtonType::momentaryPushIn);
    button->setTitle(item.displayString);
    button->setAccessibilityLabel("Settings of " + rowTitle(item));
    button->setImage(std::move(image));
    button->setImagePosition(NSButton::ImagePosition::imageOnly);
    button->setImageScaling(NSButton::ImageScaling::proportionallyUpOrDown);
    button->setBordered(false);
    button->setTarget(shared_from_this(), &kHandleEditMenuItemButtonSelector);
    button->setTag(row);
    button->scrollViewContentView = scrollViewContentView;
    button->setTranslatesAutoresizingMaskIntoConstraints(false);
    return button;
}

std::string TentativeMenuItemsTable::rowTitle(const MainMenuItem& item)
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

void TentativeMenuItemsTable::handleEditMenuItemButton(NSButton* sender)
{
    QB_CHECK(sender);
    editMenuItemProperties(sender->tag());
}

void TentativeMenuItemsTable::editMenuItemProperties(int rowNum)
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
        const auto table = std::dynamic_pointer_cast<TentativeMenuItemsTable>(self.lock());
        if (!table)
            return;
        if (response == NSModalResponseOK)
            table->enableSaving();
        table->reloadData(rowNum);
    });
}

// Adding files

bool TentativeMenuItemsTable::addFiles(const NSPasteboard& pasteboard, int row)
{
    const auto urls = pasteboard.fileURLs();
    if (!urls)
        return false;
    if (const auto preferences = PreferencesWindowVC::preferencesWindow().lock())
        preferences->orderFrontRegardless();
    const MainMenuItem::List items = menuItemsFromURLs(*urls);
    if (items.empty())
        return false;
    insertMenuItems(items, row);
    return true;
}

void TentativeMenuItemsTable::beginPickingFiles(int row)
{
    const auto parent = window();
    if (!parent || parent->attachedSheet())
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
        const auto table = std::dynamic_pointer_cast<TentativeMenuItemsTable>(self.lock());
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
        // The list may have become shorter while the panel was open.
        table->insertMenuItems(items, std::min(row, table->numberOfRows(*table)));
    });
}

// Changing the list

void TentativeMenuItemsTable::changeList(MainMenuItem::List list, Animation animation)
{
    std::unordered_map<const MainMenuItem*, int> places;
    for (std::size_t row = 0; row < list.size(); ++row)
        places.emplace(list[row].get(), static_cast<int>(row));
    std::vector<int> newRows;
    newRows.reserve(tentativeMenuItems.size());
    for (const auto& item : tentativeMenuItems) {
        // Each place is taken once, even if an item is in the list twice.
        const auto place = places.extract(item.get());
        newRows.push_back(place ? place.mapped() : -1);
    }
    if (const auto shownIn = window()) {
        shownIn->undoManager().registerUndo([weakTable = weak_from_this(), before = tentativeMenuItems] {
            if (const auto table = std::static_pointer_cast<TentativeMenuItemsTable>(weakTable.lock()))
                table->restoreList(before);
        });
    }
    tentativeMenuItems = std::move(list);
    rearrangeRows(newRows, static_cast<int>(tentativeMenuItems.size()), animation);
    enableSaving();
}

void TentativeMenuItemsTable::insertMenuItems(const MainMenuItem::List& items, int atRow)
{
    MainMenuItem::List list = tentativeMenuItems;
    QB_CHECK(atRow >= 0 && static_cast<std::size_t>(atRow) <= list.size());
    list.insert(list.begin() + atRow, items.begin(), items.end());
    changeList(std::move(list), Animation::slideDown);
}

MainMenuItem::List TentativeMenuItemsTable::menuItemsFromURLs(const std::vector<URL>& urls)
{
    MainMenuItem::List items;
    items.reserve(urls.size());
    for (const URL& url : urls)
        items.push_back(
            std::make_shared<MainMenuItem>(MenuItemType::arbitraryPath, displayString(url), url.path(), url));
    return items;
}

void TentativeMenuItemsTable::deleteMenuItems(std::vector<int> rowNums)
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
    MainMenuItem::List kept;
    kept.reserve(tentativeMenuItems.size());
    for (std::size_t row = 0; row < tentativeMenuItems.size(); ++row) {
        if (!rows.contains(static_cast<int>(row)))
            kept.push_back(tentativeMenuItems[row]);
    }
    changeList(std::move(kept), Animation::slideUp);
}

} // namespace quillbox
