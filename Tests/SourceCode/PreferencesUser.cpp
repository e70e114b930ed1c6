#include "PreferencesUser.h"

namespace quillbox {

PreferencesUser::PreferencesUser(World& world)
{
    if (!world.controller)
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

std::vector<std::string> PreferencesUser::list() const
{
    std::vector<std::string> result;
    for (const auto& item : table().tentativeMenuItems)
        result.push_back(std::string(rawValue(item->menuItemType)).append(":").append(item->displayString));
    return result;
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
    DragTracking tracking(pasteboardOfRows(table(), rows));
    const NSDragOperation operation = tracking.move(table().shared_from_this(), gap(aboveRow));
    tracking.end();
    return operation;
}

} // namespace quillbox
