#pragma once

#include "NSButton.h"
#include "NSScrollView.h"
#include "NSTextField.h"

#include <memory>

namespace quillbox {

class SuggestedMenuItemsTable;
class TentativeMenuItemDeleter;
class TentativeMenuItemsTable;

// Fills the tab in which the menu is arranged: the two tables side by side, the trash can and the texts that explain
// them. It is needed only while it fills the tab; the views belong to the tab.
class MenusTab {
public:
    // `resetButton` is already in the tab.
    MenusTab(std::shared_ptr<NSView> tab, std::shared_ptr<NSButton> resetButton);

    const std::shared_ptr<TentativeMenuItemsTable>& tentativeTable() const { return tentativeTable_; }

private:
    void makeViews();
    void placeTables();
    void placeHeadings();
    void placeArrow();
    void placeTrash();
    void placeReset();

    std::shared_ptr<NSTextField> addText(const std::string& text, bool isSelectable,
                                         std::optional<FontAttribute> font = {});
    std::shared_ptr<NSScrollView> addScrollView();
    // Makes a long text wrap at the edge of the tab.
    void keepInside(NSTextField& text);

    std::shared_ptr<NSView> tab_;
    std::shared_ptr<NSButton> resetButton_;
    std::shared_ptr<NSScrollView> leftScrollView_;
    std::shared_ptr<NSScrollView> rightScrollView_;
    std::shared_ptr<TentativeMenuItemsTable> tentativeTable_;
    std::shared_ptr<NSTextField> instructions_;
    std::shared_ptr<TentativeMenuItemDeleter> trash_;
    std::shared_ptr<NSTextField> trashText_;
};

} // namespace quillbox
