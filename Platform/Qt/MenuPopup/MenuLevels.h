#pragma once

#include "FileDrag.h"
#include "MenuAccessible.h"
#include "MenuPopup.h"
#include "MenuTracking.h"
#include "PopupGrab.h"

#include <QPointer>
#include <QRect>
#include <QWindow>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quillbox {

// What a click or a key with these modifiers asks for.
inline MenuTracking::Choice choiceFor(Qt::KeyboardModifiers modifiers)
{
    return modifiers & Qt::ControlModifier ? MenuTracking::Choice::alternate : MenuTracking::Choice::ordinary;
}

// The open menu on the screen: one popup for each level of a MenuTracking, which tells the delegates. It places the
// popups, highlights rows, and opens, closes and chooses; MenuPointer and MenuKeyboard decide when. Levels count from
// 0, the menu at the top.
class MenuLevels {
public:
    MenuLevels(MenuPopupEvents& events, AssistiveTechnology listener);
    ~MenuLevels();
    MenuLevels(const MenuLevels&) = delete;
    MenuLevels& operator=(const MenuLevels&) = delete;

    // Returns false if nothing was opened, because an alert runs or neither menu has a row to show. For `owner` see
    // MenuPresenter.
    bool open(const std::shared_ptr<NSMenu>& menu, QRect anchor, const std::shared_ptr<NSMenu>& reserve,
              QWindow* owner);
    // Closes every level after the first `count`, on the screen first. 0 closes all.
    void closeToCount(std::size_t count);
    // Opens the submenu of that row. Nothing happens if it has none or its submenu is open already.
    void openSubmenu(std::size_t level, std::size_t row);
    // Opens the menu of what can be done with that row as the level after it, beside `anchor` (global). Returns false
    // if there is no such menu.
    bool openItemMenu(std::size_t level, std::size_t row, QRect anchor);
    // Whether the level is behind an open menu of what can be done with a row. The pointer then does nothing on it but
    // close that menu.
    bool isBehindItemMenu(std::size_t level) const { return itemMenuLevel_ && level < *itemMenuLevel_; }
    bool isInItemMenu(std::size_t level) const { return itemMenuLevel_ && level >= *itemMenuLevel_; }
    void closeItemMenu() { closeToCount(itemMenuLevel_.value_or(count())); }
    // Narrow a level; see MenuPopup. Deeper levels close.
    void beginNarrowing(std::size_t level);
    // Shows the rows for what is typed and highlights the first.
    void narrow(std::size_t level);
    void endNarrowing(std::size_t level);
    // Takes the menu off the screen and drags the file of a row that was pressed at `press` (global). Nothing happens
    // if the file can't be reached.
    void dragOut(std::size_t level, const std::shared_ptr<NSMenuItem>& item, QPoint press);
    // Does what a click or Return does: sends the row's action after all menus have left the screen, or opens the
    // submenu of a row without an action. Nothing happens for other rows. Returns true if an action was sent.
    bool activate(std::size_t level, std::size_t row, MenuTracking::Choice choice);

    bool isOpen() const { return !popups_.empty(); }
    std::size_t count() const { return popups_.size(); }
    MenuPopup& popup(std::size_t level) { return *popups_[level]; }
    const MenuPopup& popup(std::size_t level) const { return *popups_[level]; }
    QRect anchor() const { return anchor_; }
    // Returns the topmost popup at that point; nothing if there is none.
    std::optional<std::size_t> levelAt(QPoint global) const;
    // Returns the row of `level` whose submenu is the next level; nothing for the last level.
    std::optional<std::size_t> openRow(std::size_t level) const
    {
        return level < count() ? popup(level).openRow() : std::nullopt;
    }

    // Highlights a row of `level` and the rows that lead to it, and removes the highlight from deeper levels. Without a
    // row, or for one that can't be selected, it removes the highlight from `level`.
    void select(std::size_t level, std::optional<std::size_t> row);
    // The level on which keys act: the last one in which a row was highlighted.
    std::size_t activeLevel() const { return activeLevel_; }

    // Must be called when some popup got a pointer event.
    void pointerWasHeardOf() { grab_.pointerWasHeardOf(); }
    // A key has opened the menu.
    void awaitKeyboard() { grab_.awaitKeyboard(); }

    // Runs a drag after the present event.
    std::function<void(const FileDrag&)> runDrag;

    // Called when the last level has left the screen, before an action is sent.
    std::function<void()> onClosed;

private:
    void show(std::unique_ptr<MenuPopup> popup, QRect geometry, Qt::Edge fixedEdge);
    std::unique_ptr<MenuPopup> takeSpare();
    void makeSpare();
    void takeOffScreen(std::size_t count);
    void updateFocus();

    struct Focus {
        const MenuPopup* popup = nullptr;
        std::optional<std::size_t> row;
        friend bool operator==(const Focus&, const Focus&) = default;
    };

    MenuPopupEvents& events_;
    MenuAccessibility accessibility_;
    MenuTracking tracking_;
    std::vector<std::unique_ptr<MenuPopup>> popups_;
    // A popup without a menu whose window exists already, for the submenu that is opened next. It is null for a moment
    // after each opening.
    std::unique_ptr<MenuPopup> spare_;
    std::unique_ptr<Clock::Timer> spareTimer_;
    PopupGrab grab_;
    QRect anchor_;
    QPointer<QWindow> owner_;
    QRect available_;
    std::size_t activeLevel_ = 0;
    // The level of the menu of what can be done with a row, if one is open.
    std::optional<std::size_t> itemMenuLevel_;
    // What assistive technologies were told last.
    Focus focus_;
};

} // namespace quillbox
