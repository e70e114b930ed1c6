#pragma once

#include "Clock.h"

#include <QString>

#include <cstddef>
#include <memory>
#include <optional>

class QKeyEvent;

namespace quillbox {

class MenuLevels;

// What the keyboard does to an open menu: walks, opens, closes, chooses, and finds rows by the beginning of
// their titles. One is made for each opening of a menu. The pause that ends a typed name runs on the
// installed clock.
class MenuKeyboard {
public:
    // `levels` must outlive it.
    explicit MenuKeyboard(MenuLevels& levels) : levels_(levels) { }

    // True where the key meant something to the menu. The menu may be closed afterwards.
    bool pressed(const QKeyEvent& event);
    // These do what Return and Right do with the highlighted row. The menu may be closed after the first.
    void activateSelected();
    void openSelected();
    // Does what Home does.
    void selectFirst() { selectNear(0, 1); }
    // The menu has closed.
    void stop() { typedTimer_.reset(); }

private:
    bool walk(int key);
    bool enterOrLeave(int key);
    void step(int direction);
    void selectNear(std::size_t row, int direction);
    void selectRow(std::size_t row);
    bool type(const QKeyEvent& event);
    // The first selectable row from `row` on, in steps of `direction` (1 or -1), without going round.
    std::optional<std::size_t> selectableFrom(std::size_t row, int direction) const;

    MenuLevels& levels_;
    QString typed_;
    std::unique_ptr<Clock::Timer> typedTimer_;
};

} // namespace quillbox
