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
// Row 0 stays where it is: it can't be selected or dragged, and nothing can be dropped above it. Every change can be
// undone while the window is open. Its own data source and delegate.
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

    // Makes `list` the list that is being arranged. Rows of items that stay keep their views, and go where they belong.
    void changeList(MainMenuItem::List list, Animation animation);
    // Opens the settings of a row's item in a sheet. Separators have none.
    void editMenuItemProperties(int rowNum);
    // Removes those rows, whichever order and however often they are named; all are below the list's length.
    void deleteMenuItems(std::vector<int> rowNums);
    // The items keep their order; the old row and those below follow them.
    void insertMenuItems(const MainMenuItem::List& items, int atRow);
    // Where the items of a row drag are now, in the drag's order. A drag names its items: one that has left the list is
    // left out, and a drag of another window's table, or of one that is closed, gives none.
    std::vector<int> rowsOfDrag(const NSPasteboard& pasteboard) const;
    // A new item of each kind below the selected rows, or last where none is selected. For a picked file, the panel
    // comes first.
    void addKinds(const std::vector<MenuItemType>& kinds);
    // A picked item for each URL. Volumes get the name that people see for them.
    static MainMenuItem::List menuItemsFromURLs(const std::vector<URL>& urls);

    // Actions
    void handleEditMenuItemButton(NSButton* sender);
    void doubleClickTableRow(NSObject*) { }

    // As wide as the row that is always there; longer titles are cut off with an ellipsis.
    NSSize leastSize() const override;
    int numberOfRows(NSTableView& tableView) override;
    std::shared_ptr<NSView> viewForRow(NSTableView& tableView, int row) override;
    void rowViewDidMove(NSTableView& tableView, NSView& view, int row) override;
    bool shouldSelectRow(NSTableView&, int row) override { return row > 0; }
    std::shared_ptr<NSPasteboardWriting> pasteboardWriterForRow(NSTableView& tableView, int row) override;
    NSDragOperation validateDrop(NSTableView& tableView, const NSDraggingInfo& info, int row,
                                 DropOperation dropOperation) override;
    bool acceptDrop(NSTableView& tableView, const NSDraggingInfo& info, int row, DropOperation dropOperation) override;

    bool canPerform(Command command, int row) const override;
    void paste(const NSPasteboard& pasteboard) override;

protected:
    void perform(Command command, const std::set<int>& rows) override;

private:
    // Changes the list back, and selects what that brings.
    void restoreList(const MainMenuItem::List& list);
    // Each of the rows by one place, as far as there is room; they keep their order.
    void moveByOne(const std::set<int>& rows, bool up);
    // A row below the selected ones, or the end.
    int rowForNewItems() const;
    // Rows that the keyboard has added.
    void selectNewRows(const MainMenuItem::List& before);
    std::shared_ptr<NSButton> makeEditButton(const MainMenuItem& item, int row);
    std::string rowTitle(const MainMenuItem& item);
    // `rows` is ascending.
    void moveItems(const std::vector<int>& rows, int aboveRow);
    bool addSuggestedItems(const NSPasteboard& pasteboard, int row);
    bool insertKinds(const std::vector<MenuItemType>& kinds, int row);
    bool addFiles(const NSPasteboard& pasteboard, int row);
    void beginPickingFiles(int row);
    void enableSaving();
};

} // namespace quillbox
