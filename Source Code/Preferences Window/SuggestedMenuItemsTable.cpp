#include "SuggestedMenuItemsTable.h"

#include "GlobalVars.h"
#include "MainMenuItem.h"
#include "NSTextField.h"
#include "TentativeMenuItemsTable.h"

#include <algorithm>

namespace quillbox {

namespace {

    std::string missingInfo(std::string_view name)
    {
        return "(SuggestedMenuItemsTable didn't have any info for " + std::string(name) + ")";
    }

    // Returns the text that other programs get for a dragged kind.
    std::string plainText(const std::string& rawString)
    {
        const auto type = menuItemType(rawString);
        if (!type)
            return "(MenuItemType." + rawString + " isn't defined)";
        const MainMenuItem::Info* info = MainMenuItem::menuItemInfo(*type);
        return info ? info->displayString : missingInfo(rawString);
    }

} // namespace

std::shared_ptr<SuggestedMenuItemsTable> SuggestedMenuItemsTable::create()
{
    auto table = std::make_shared<SuggestedMenuItemsTable>();
    table->setAllowsMultipleSelection(true);
    table->setDelegate(table);
    table->setDataSource(table);
    table->setDraggingSourceOperationMaskOutside(NSDragOperation::copy);
    table->addTableColumn({ "col0 identifier", "Quillbox Items" });
    return table;
}

NSSize SuggestedMenuItemsTable::leastSize() const
{
    double width = 0;
    for (const MenuItemType kind : suggestedKinds) {
        const MainMenuItem::Info* info = MainMenuItem::menuItemInfo(kind);
        // A line is as long as there is room.
        if (info && kind != MenuItemType::separator)
            width = std::max(width, NSTextField::label(info->displayString)->naturalSize(kNoWidthLimit).width);
    }
    return { width + 2 * kCellInset, 0 };
}

int SuggestedMenuItemsTable::numberOfRows(NSTableView&)
{
    return static_cast<int>(suggestedKinds.size());
}

std::shared_ptr<NSView> SuggestedMenuItemsTable::viewForRow(NSTableView&, int row)
{
    const auto index = static_cast<std::size_t>(row);
    if (index >= suggestedKinds.size())
        return NSTextField::label("error: rowNum=" + std::to_string(row) + " is past the table size ("
                                  + std::to_string(suggestedKinds.size()) + ")");
    const MenuItemType kind = suggestedKinds[index];
    const MainMenuItem::Info* info = MainMenuItem::menuItemInfo(kind);
    if (!info)
        return NSTextField::label(missingInfo(rawValue(kind)));
    auto container = std::make_shared<NSView>();
    const auto label = NSTextField::label(info->displayString);
    label->setMaximumNumberOfLines(1);
    if (!info->description.empty())
        label->setToolTip(info->description);
    if (kind == MenuItemType::separator)
        label->setAccessibilityLabel("Separator");
    label->setTranslatesAutoresizingMaskIntoConstraints(false);
    container->addSubview(label);
    NSLayoutConstraint::activate({
        label->leftAnchor().constraintEqualTo(container->leftAnchor()),
        label->rightAnchor().constraintLessThanOrEqualTo(container->rightAnchor()),
        label->centerYAnchor().constraintEqualTo(container->centerYAnchor()),
    });
    return container;
}

std::shared_ptr<NSPasteboardWriting> SuggestedMenuItemsTable::pasteboardWriterForRow(NSTableView&, int row)
{
    const MenuItemType kind = suggestedKinds[static_cast<std::size_t>(row)];
    return std::make_shared<SuggestedMenuItemsPasteboardWriter>(std::string(rawValue(kind)));
}

bool SuggestedMenuItemsTable::canPerform(Command command, int) const
{
    return command == Command::add && !tableWithTentativeMenus.expired();
}

void SuggestedMenuItemsTable::perform(Command, const std::set<int>& rows)
{
    std::vector<MenuItemType> kinds;
    kinds.reserve(rows.size());
    for (const int row : rows)
        kinds.push_back(suggestedKinds[static_cast<std::size_t>(row)]);
    if (const auto table = tableWithTentativeMenus.lock())
        table->addKinds(kinds);
    announce(kinds.size() == 1 ? "Added" : "Added " + std::to_string(kinds.size()) + " items");
}

std::vector<std::string> SuggestedMenuItemsPasteboardWriter::writableTypes() const
{
    return { GlobalVars::suggestedMenuItemPasteboardType(), NSPasteboardTypeString };
}

std::optional<PropertyList> SuggestedMenuItemsPasteboardWriter::pasteboardPropertyList(const std::string& forType) const
{
    if (forType == GlobalVars::suggestedMenuItemPasteboardType())
        return enumRawString;
    if (forType == NSPasteboardTypeString)
        return plainText(enumRawString);
    return std::nullopt;
}

} // namespace quillbox
