#pragma once

#include "MainMenuItem.h"
#include "NSButton.h"
#include "NSScrollView.h"
#include "NSTableView.h"

#include <memory>
#include <string>
#include <vector>

namespace quillbox {

// The table in which the user arranges the menu's items. It works on its own list of the live list's items; the
// window's Apply button makes that list the live one, and every change here enables the button. Row 0 stays where it
// is: it can't be selected or dragged, and nothing can be dropped above it. Every change can be undone while the window
// is open. The table is its own data source and delegate.
class TentativeMenuItemsTable final : public NSTableView, public NSTableViewDataSource, public NSTableViewDelegate {
public:
    // Makes the table with the live list's items. `scrollView` is the view that holds the table; it may be null.
    static std::shared_ptr<TentativeMenuItemsTable> create(const std::shared_ptr<NSScrollView>& scrollView);
    // The constructor is for create(), which everyone else uses: a table that is not shared can't be its own delegate.
    TentativeMenuItemsTable() = default;

    const char* className() const override { return "TentativeMenuItemsTable"; }

    // Row i shows item i.
    MainMenuItem::List tentativeMenuItems;
    // The window's Apply button.
    std::weak_ptr<NSButton> savePreferencesButton;
    // The view that clips the table; the buttons need it for their cursors.
    std::weak_ptr<NSClipView> scrollViewContentView;

    // Makes `list` the list that is being arranged. Rows of items that stay keep their views and move to their new
    // places.
    void changeList(MainMenuItem::List list, Animation animation);
    // Opens the settings of the row's item in a sheet. Separators have no settings.
    void editMenuItemProperties(int rowNum);
    // Removes these rows. They may be in any order and repeated, and must all be in the list.
    void deleteMenuItems(std::vector<int> rowNums);
    // Inserts the items above the row, in their order.
    void insertMenuItems(const MainMenuItem::List& items, int atRow);
    // Returns the present rows of the items in a row drag, in the drag's order. The drag refers to its items: one that
    // has left the list is left out, and a drag from the table of another window, or of one that is closed, gives no
    // rows.
    std::vector<int> rowsOfDrag(const NSPasteboard& pasteboard) const;
    // Adds a new item of each kind below the selected rows, or at the end if none is selected. For a picked file the
    // open panel comes first.
    void addKinds(const std::vector<MenuItemType>& kinds);
    // Makes a picked item for each URL. Volumes get the name that file managers show.
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
    // Changes the list back, and selects the rows that return with it.
    void restoreList(const MainMenuItem::List& list);
    // Moves each of the rows by one place as far as there is room. They keep their order.
    void moveByOne(const std::set<int>& rows, bool up);
    // Returns the row below the selected ones, or the end.
    int rowForNewItems() const;
    // Selects and shows the rows that are not in `before`.
    void selectNewRows(const MainMenuItem::List& before);
    std::shared_ptr<NSButton> makeEditButton(const MainMenuItem& item, int row);
    std::string rowTitle(const MainMenuItem& item);
    // `rows` is in ascending order.
    void moveItems(const std::vector<int>& rows, int aboveRow);
    bool addSuggestedItems(const NSPasteboard& pasteboard, int row);
    bool insertKinds(const std::vector<MenuItemType>& kinds, int row);
    bool addFiles(const NSPasteboard& pasteboard, int row);
    void beginPickingFiles(int row);
    void enableSaving();
};

} // namespace quillbox
