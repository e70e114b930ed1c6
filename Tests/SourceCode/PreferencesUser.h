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

// A person with the preferences window: opens it from the menu's row, presses buttons by their titles, and drags.
class PreferencesUser {
public:
    explicit PreferencesUser(World& world);

    std::shared_ptr<NSWindow> window() const { return PreferencesWindowVC::preferencesWindow().lock(); }
    std::shared_ptr<PreferencesWindowVC> controller() const;
    TentativeMenuItemsTable& table() const { return view<TentativeMenuItemsTable>(); }
    TentativeMenuItemDeleter& trash() const { return view<TentativeMenuItemDeleter>(); }
    NSButton& button(const std::string& title) const;
    void press(const std::string& title) const { button(title).performClick(); }

    // The kinds and titles of the list being arranged: "plaintext:b".
    std::vector<std::string> list() const;

    // Each drags as a hand does, from press to release; what was dropped on took it or not.
    bool dragRows(const std::set<int>& rows, int aboveRow) const;
    bool dragSuggestions(const std::set<int>& rows, int aboveRow) const;
    bool dropFiles(const std::vector<std::string>& urls, int aboveRow) const;
    bool dragRowsToTrash(const std::set<int>& rows) const;
    // What the drag would do there.
    NSDragOperation hover(const std::set<int>& rows, int aboveRow) const;

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

private:
    NSPasteboard pasteboardOfRows(NSTableView& from, const std::set<int>& rows) const;
    bool drop(NSPasteboard pasteboard, NSView& on, NSPoint at) const;
    NSPoint gap(int aboveRow) const;
};

} // namespace quillbox
