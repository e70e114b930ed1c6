#pragma once

#include "Clock.h"
#include "MenuTracking.h"

#include <QString>

#include <cstddef>
#include <memory>
#include <optional>

class QKeyEvent;

namespace quillbox {

class MenuLevels;

// What the keyboard does with an open menu: it moves through rows, opens and closes submenus, chooses, finds rows
// by the beginning of their titles, and narrows a level. One is made for each opening of a menu. The pause that ends a
// typed name is measured by the installed clock.
class MenuKeyboard {
public:
    // `levels` must outlive this object.
    explicit MenuKeyboard(MenuLevels& levels) : levels_(levels) { }

    // Returns true if the key has a meaning for the menu. The menu may be closed after the call.
    bool pressed(QKeyEvent& event);
    // These do what Return, Right and the Menu key do with the highlighted row. The menu may be closed after the first
    // of them.
    void activateSelected(MenuTracking::Choice choice);
    void openSelected();
    void openItemMenu();
    // Does what Home does.
    void selectFirst() { selectNear(0, 1); }
    // Must be called when the menu has closed.
    void stop() { typedTimer_.reset(); }

private:
    bool walk(int key);
    bool enterOrLeave(int key);
    void step(int direction);
    void selectFirstOf(std::size_t level);
    void selectNear(std::size_t row, int direction);
    void selectRow(std::size_t row);
    void leave();
    bool beginsNarrowing(const QKeyEvent& event);
    bool type(QKeyEvent& event);
    // Returns the next selectable row whose title begins with `name`, from `from` on and around.
    std::optional<std::size_t> findTitle(const QString& name, std::size_t from) const;
    // Returns the first selectable row from `row` on, in steps of `direction` (1 or -1), without wrapping around.
    std::optional<std::size_t> selectableFrom(std::size_t row, int direction) const;

    MenuLevels& levels_;
    QString typed_;
    std::unique_ptr<Clock::Timer> typedTimer_;
};

} // namespace quillbox
