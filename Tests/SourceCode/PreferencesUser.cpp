#include "PreferencesUser.h"

#include "ManageDefaults.h"

#include <cctype>

namespace quillbox {

MainMenuItem::List labels(std::string_view letters)
{
    MainMenuItem::List items { item(MenuItemType::fixedAppPreferences) };
    for (const char letter : letters)
        items.push_back(item(MenuItemType::plaintext, std::string(1, letter)));
    return items;
}

void PreferencesUser::open(MainMenuItem::List list)
{
    MainMenuItem::actualMenuItems() = std::move(list);
    ManageDefaults::saveAllToDisk();
    open();
}

void PreferencesUser::open()
{
    world.launch();
    world.controller->openAppPreferencesWindow(nullptr);
}

std::shared_ptr<PreferencesWindowVC> PreferencesUser::controller() const
{
    return std::dynamic_pointer_cast<PreferencesWindowVC>(window()->contentViewController());
}

void PreferencesUser::visit(NSView& view, const std::function<void(NSView&)>& visitor)
{
    visitor(view);
    for (const auto& subview : view.subviews())
        visit(*subview, visitor);
}

NSButton& PreferencesUser::button(const std::string& title) const
{
    NSButton* found = nullptr;
    const auto front = window()->attachedSheet() ? window()->attachedSheet() : window();
    visit(*front->contentView(), [&](NSView& each) {
        auto* const button = dynamic_cast<NSButton*>(&each);
        found = button && button->title() == title ? button : found;
    });
    QB_CHECK(found);
    return *found;
}

std::string PreferencesUser::letters() const
{
    std::string text;
    for (std::size_t row = 1; row < table().tentativeMenuItems.size(); ++row) {
        const MainMenuItem& item = *table().tentativeMenuItems[row];
        const char letter = item.menuItemType == MenuItemType::separator ? '-' : item.displayString[0];
        const bool isSelected = table().selectedRowIndexes().contains(static_cast<int>(row));
        text += static_cast<char>(isSelected ? std::toupper(letter) : std::tolower(letter));
    }
    return text;
}

NSPasteboard PreferencesUser::pasteboardOfRows(NSTableView& from, const std::set<int>& rows) const
{
    window()->layoutIfNeeded();
    from.selectRowIndexes(rows, false);
    auto pasteboard = from.beginDragging(*rows.begin());
    QB_CHECK(pasteboard);
    return *pasteboard;
}

NSPoint PreferencesUser::gap(int aboveRow) const
{
    return { 10, aboveRow * table().rowHeight() };
}

bool PreferencesUser::drop(NSPasteboard pasteboard, NSView& on, NSPoint at) const
{
    DragTracking tracking(std::move(pasteboard));
    tracking.move(on.shared_from_this(), at);
    const bool isTaken = tracking.drop();
    tracking.end();
    if (window())
        window()->layoutIfNeeded();
    return isTaken;
}

bool PreferencesUser::dragRows(const std::set<int>& rows, int aboveRow) const
{
    return drop(pasteboardOfRows(table(), rows), table(), gap(aboveRow));
}

bool PreferencesUser::dragSuggestions(const std::set<int>& rows, int aboveRow) const
{
    return drop(pasteboardOfRows(view<SuggestedMenuItemsTable>(), rows), table(), gap(aboveRow));
}

bool PreferencesUser::dropFiles(const std::vector<std::string>& urls, int aboveRow) const
{
    return drop(NSPasteboard::ofFiles(urls), table(), gap(aboveRow));
}

bool PreferencesUser::dragRowsToTrash(const std::set<int>& rows) const
{
    return drop(pasteboardOfRows(table(), rows), trash(), { 20, 20 });
}

NSDragOperation PreferencesUser::hover(const std::set<int>& rows, int aboveRow) const
{
    DragTracking tracking = dragOf(rows);
    const NSDragOperation operation = tracking.move(table().shared_from_this(), gap(aboveRow));
    tracking.end();
    return operation;
}

} // namespace quillbox
