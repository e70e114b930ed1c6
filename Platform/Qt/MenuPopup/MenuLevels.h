#pragma once

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

// The open menu on the screen: one popup a level, kept level for level with a MenuTracking, which tells the
// delegates. It places the popups, highlights rows, opens, closes and chooses when the pointer or the
// keyboard ask for it; when they do is theirs. Levels count from 0, the menu at the top.
class MenuLevels {
public:
    MenuLevels(MenuPopupEvents& events, AssistiveTechnology listener);
    ~MenuLevels();
    MenuLevels(const MenuLevels&) = delete;
    MenuLevels& operator=(const MenuLevels&) = delete;

    // False where nothing was opened: an alert runs, or there is no row to show in either menu. `owner` as
    // MenuPresenter has it.
    bool open(const std::shared_ptr<NSMenu>& menu, QRect anchor, const std::shared_ptr<NSMenu>& reserve,
              QWindow* owner);
    // Closes every level past the first `count`, on the screen first. 0 closes all.
    void closeToCount(std::size_t count);
    // Opens the submenu of that row; nothing where it has none, or is open already.
    void openSubmenu(std::size_t level, std::size_t row);
    // What a click or Return does: sends the row's action after everything has gone off the screen, or opens the
    // submenu of a row that has no action. Nothing for other rows. True where an action was sent.
    bool activate(std::size_t level, std::size_t row);

    bool isOpen() const { return !popups_.empty(); }
    std::size_t count() const { return popups_.size(); }
    MenuPopup& popup(std::size_t level) { return *popups_[level]; }
    const MenuPopup& popup(std::size_t level) const { return *popups_[level]; }
    QRect anchor() const { return anchor_; }
    // The topmost popup there; none outside.
    std::optional<std::size_t> levelAt(QPoint global) const;
    // The row of `level` whose submenu is the next level; none for the last level.
    std::optional<std::size_t> openRow(std::size_t level) const
    {
        return level < count() ? popup(level).openRow() : std::nullopt;
    }

    // Highlights a row of `level` (none: takes the highlight away), the rows that lead there, and nothing in
    // deeper levels. Rows that can't be selected count as none.
    void select(std::size_t level, std::optional<std::size_t> row);
    // The level that the keys act on: the last one in which a row was highlighted.
    std::size_t activeLevel() const { return activeLevel_; }

    // Some popup had an event of the pointer.
    void pointerWasHeardOf() { grab_.pointerWasHeardOf(); }
    // A key has opened the menu.
    void awaitKeyboard() { grab_.awaitKeyboard(); }

    // Called when the last level has gone off the screen, before an action is sent.
    std::function<void()> onClosed;

private:
    void show(std::unique_ptr<MenuPopup> popup, QRect geometry, Qt::Edge fixedEdge);
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
    // A popup without a menu that has its window already, for the submenu that is opened next. Null for a moment
    // after each opening.
    std::unique_ptr<MenuPopup> spare_;
    std::unique_ptr<Clock::Timer> spareTimer_;
    PopupGrab grab_;
    QRect anchor_;
    QPointer<QWindow> owner_;
    QRect available_;
    std::size_t activeLevel_ = 0;
    // What assistive technologies were told last.
    Focus focus_;
};

} // namespace quillbox
