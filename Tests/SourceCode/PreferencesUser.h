#pragma once

#include "World.h"

#include "DragTracking.h"
#include "NSButton.h"
#include "NSWindow.h"
#include "PreferencesWindowVC.h"
#include "SuggestedMenuItemsTable.h"
#include "TentativeMenuItemDeleter.h"
#include "TentativeMenuItemsTable.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace quillbox {

// The fixed row, and below it a label for each letter.
MainMenuItem::List labels(std::string_view letters);

// A person with the preferences window, in a world of their own: opens it from the menu's row, presses buttons by
// their titles, and drags.
class PreferencesUser {
public:
    // Nothing is open yet.
    PreferencesUser() = default;
    explicit PreferencesUser(MainMenuItem::List list) { open(std::move(list)); }
    // Makes the list the live and the stored one.
    void open(MainMenuItem::List list);
    void open();

    std::shared_ptr<NSWindow> window() const { return PreferencesWindowVC::preferencesWindow().lock(); }
    std::shared_ptr<PreferencesWindowVC> controller() const;
    TentativeMenuItemsTable& table() const { return view<TentativeMenuItemsTable>(); }
    TentativeMenuItemDeleter& trash() const { return view<TentativeMenuItemDeleter>(); }
    NSButton& button(const std::string& title) const;
    void press(const std::string& title) const { button(title).performClick(); }

    // The list being arranged, below its fixed row, by the first letters of its titles: selected ones in capitals,
    // separators as "-".
    std::string letters() const;

    // Each drags as a hand does, from press to release; what was dropped on took it or not.
    bool dragRows(const std::set<int>& rows, int aboveRow) const;
    bool dragSuggestions(const std::set<int>& rows, int aboveRow) const;
    bool dropFiles(const std::vector<std::string>& urls, int aboveRow) const;
    bool dragRowsToTrash(const std::set<int>& rows) const;
    // What the drag would do there.
    NSDragOperation hover(const std::set<int>& rows, int aboveRow) const;
    // A drag that has only begun.
    DragTracking dragOf(const std::set<int>& rows) const { return DragTracking(pasteboardOfRows(table(), rows)); }

    // The first view of that class in the window.
    template <class View>
    View& view() const
    {
        View* found = nullptr;
        visit(*window()->contentView(), [&](NSView& each) { found = found ? found : dynamic_cast<View*>(&each); });
        QB_CHECK(found);
        return *found;
    }
    static void visit(NSView& view, const std::function<void(NSView&)>& visitor);

    World world;

private:
    NSPasteboard pasteboardOfRows(NSTableView& from, const std::set<int>& rows) const;
    bool drop(NSPasteboard pasteboard, NSView& on, NSPoint at) const;
    NSPoint gap(int aboveRow) const;
};

} // namespace quillbox
