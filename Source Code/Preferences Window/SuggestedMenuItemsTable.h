#pragma once

#include "MenuItemType.h"
#include "NSTableView.h"

#include <array>
#include <memory>

namespace quillbox {

class TentativeMenuItemsTable;

// The table of the kinds of items that can be added to the menu, by dragging them out of it or with the keyboard. It
// accepts no drops. It is its own data source and delegate.
class SuggestedMenuItemsTable final : public NSTableView, public NSTableViewDataSource, public NSTableViewDelegate {
public:
    // Each kind has a row, in this order.
    static constexpr std::array suggestedKinds {
        MenuItemType::systemSettings,  MenuItemType::systemApplicationsDirectory,
        MenuItemType::separator,       MenuItemType::recentItems,
        MenuItemType::recentItemsApps, MenuItemType::recentItemsDocs,
        MenuItemType::arbitraryPath,   MenuItemType::plaintext,
    };

    static std::shared_ptr<SuggestedMenuItemsTable> create();
    // The constructor is for create(), which everyone else uses: a table that is not shared can't be its own delegate.
    SuggestedMenuItemsTable() = default;

    const char* className() const override { return "SuggestedMenuItemsTable"; }

    // As wide as its titles.
    NSSize leastSize() const override;

    int numberOfRows(NSTableView& tableView) override;
    std::shared_ptr<NSView> viewForRow(NSTableView& tableView, int row) override;
    std::shared_ptr<NSPasteboardWriting> pasteboardWriterForRow(NSTableView& tableView, int row) override;
    bool canPerform(Command command, int row) const override;

    // The table to which items are added.
    std::weak_ptr<TentativeMenuItemsTable> tableWithTentativeMenus;

protected:
    void perform(Command command, const std::set<int>& rows) override;
};

// One dragged suggestion.
class SuggestedMenuItemsPasteboardWriter final : public NSPasteboardWriting {
public:
    explicit SuggestedMenuItemsPasteboardWriter(std::string rawString) : enumRawString(std::move(rawString)) { }

    std::vector<std::string> writableTypes() const override;
    std::optional<PropertyList> pasteboardPropertyList(const std::string& forType) const override;

    // The raw value of the kind.
    const std::string enumRawString;
};

} // namespace quillbox
