#pragma once

#include "MainMenuItem.h"
#include "NSButton.h"
#include "NSScrollView.h"
#include "NSTableView.h"

#include <memory>
#include <string>
#include <vector>

namespace quillbox {

// The table of the menu's items as the person is arranging them. It works on a list of its own that holds the live
// list's items; the window's Apply button makes that list the live one, and every change here enables the button.
// Row 0 stays where it is: it can't be selected or dragged, and nothing can be dropped above it. Its own data source
// and delegate.
class TentativeMenuItemsTable final : public NSTableView, public NSTableViewDataSource, public NSTableViewDelegate {
public:
    // The live list's items. `scrollView`, which may be null, is the one that holds the table.
    static std::shared_ptr<TentativeMenuItemsTable> create(const std::shared_ptr<NSScrollView>& scrollView);
    // Use create(): a table that is not shared can't be its own delegate.
    TentativeMenuItemsTable() = default;

    const char* className() const override { return "TentativeMenuItemsTable"; }

    // Row i shows item i.
    MainMenuItem::List tentativeMenuItems;
    // The window's Apply button.
    std::weak_ptr<NSButton> savePreferencesButton;
    // What clips the table, for the cursors of its buttons.
    std::weak_ptr<NSClipView> scrollViewContentView;

    // Opens the settings of a row's item in a sheet. Separators have none.
    void editMenuItemProperties(int rowNum);
    // Removes those rows, whichever order and however often they are named; all are below the list's length.
    void deleteMenuItems(std::vector<int> rowNums);
    // The items keep their order; the old row and those below follow them.
    void insertMenuItems(const MainMenuItem::List& items, int atRow);
    // A picked item for each URL. Volumes get the name that people see for them.
    static MainMenuItem::List menuItemsFromURLs(const std::vector<URL>& urls);

    // Actions
    void handleEditMenuItemButton(NSButton* sender);
    void doubleClickTableRow(NSObject*) { }
    // The selected rows go, as if dragged to the trash can.
    void deleteBackward() override;

    int numberOfRows(NSTableView& tableView) override;
    std::shared_ptr<NSView> viewForRow(NSTableView& tableView, int row) override;
    bool shouldSelectRow(NSTableView&, int row) override { return row > 0; }
    std::shared_ptr<NSPasteboardWriting> pasteboardWriterForRow(NSTableView& tableView, int row) override;
    NSDragOperation validateDrop(NSTableView& tableView, const NSDraggingInfo& info, int row,
                                 DropOperation dropOperation) override;
    bool acceptDrop(NSTableView& tableView, const NSDraggingInfo& info, int row, DropOperation dropOperation) override;

private:
    std::shared_ptr<NSButton> makeEditButton(const MainMenuItem& item, int row);
    std::string rowTitle(const MainMenuItem& item);
    void moveItems(const std::vector<int>& draggedRows, int aboveRow);
    void animateMove(std::vector<int> draggedRows, int aboveRow);
    bool addSuggestedItems(const NSPasteboard& pasteboard, int row);
    bool addFiles(const NSPasteboard& pasteboard, int row);
    void beginPickingFiles(int row);
    void enableSaving();
};

// One dragged row.
class TentativeMenuItemsTablePasteboardWriter final : public NSPasteboardWriting {
public:
    TentativeMenuItemsTablePasteboardWriter(int row, std::string text) : rowNumber(row), stringToDrop(std::move(text))
    {
    }

    std::vector<std::string> writableTypes() const override;
    std::optional<PropertyList> pasteboardPropertyList(const std::string& forType) const override;

    const int rowNumber;
    // What other programs get.
    const std::string stringToDrop;
};

} // namespace quillbox
