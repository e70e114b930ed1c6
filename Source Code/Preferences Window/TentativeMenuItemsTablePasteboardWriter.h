#pragma once

#include "MainMenuItem.h"
#include "NSPasteboard.h"

#include <memory>
#include <string>
#include <vector>

namespace quillbox {

class TentativeMenuItemsTable;

// One dragged row of the menu's table.
class TentativeMenuItemsTablePasteboardWriter final : public NSPasteboardWriting {
public:
    TentativeMenuItemsTablePasteboardWriter(int row, std::string text) : rowNumber(row), stringToDrop(std::move(text))
    {
    }

    std::vector<std::string> writableTypes() const override;
    std::optional<PropertyList> pasteboardPropertyList(const std::string& forType) const override;

    const int rowNumber;
    // The text that other programs get.
    const std::string stringToDrop;
    // The row's item and its table, for drops in this program.
    std::weak_ptr<MainMenuItem> item;
    std::weak_ptr<const TentativeMenuItemsTable> table;
};

} // namespace quillbox
