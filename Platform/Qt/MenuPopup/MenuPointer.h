#pragma once

#include "Clock.h"
#include "NSMenuItem.h"

#include <QPoint>
#include <Qt>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

namespace quillbox {

class MenuLevels;

// What the pointer does with an open menu: it highlights rows, opens submenus after a pause, scrolls and chooses. One
// is made for each opening of a menu and gets every pointer event, in global logical pixels. Pauses are measured by the
// installed clock.
class MenuPointer {
public:
    // `levels` must outlive this object. `start` is where the pointer was when the menu opened.
    MenuPointer(MenuLevels& levels, QPoint start);

    void moved(QPoint position, Qt::MouseButtons buttons);
    // The press must be inside the menus; the caller handles presses outside.
    void pressed(QPoint position, Qt::MouseButton button);
    // Control asks for the row's alternate action.
    void released(QPoint position, Qt::KeyboardModifiers modifiers);
    void wheelTurned(QPoint position, double pixels);
    // Must be called when the keyboard takes over: cancels what the pointer was about to do.
    void cancelPending();
    // Must be called when the menu has closed.
    void stop();
    // The row whose tool tip is wanted, chosen by pointer or keyboard. The tip is shown after a pause.
    void explain(std::size_t level, std::optional<std::size_t> row);

private:
    bool openItemMenu(std::size_t level, std::size_t row);
    void hover(std::size_t level, std::optional<std::size_t> row);
    void follow(std::size_t level, std::optional<std::size_t> row);
    bool isOnTheWayToSubmenu(std::size_t level) const;
    void scrollAtEdge(std::size_t level, int direction);
    void scroll(std::size_t level, int pixels);
    void takeRowUnderPointer();

    struct Place {
        std::size_t level = 0;
        std::optional<std::size_t> row;
        friend bool operator==(const Place&, const Place&) = default;
    };

    MenuLevels& levels_;
    const QPoint start_;
    QPoint position_;
    QPoint wayStart_;
    // Whether a button was pressed inside the menus and has not been released.
    bool isPressed_ = false;
    // Whether the press that opened the menu is still held and has become a drag, and whether that drag went into the
    // menus.
    bool isDragging_ = false;
    bool hasDraggedIn_ = false;
    // The row of a file on which the first button was pressed, and where.
    std::shared_ptr<NSMenuItem> pressedFile_;
    std::size_t pressedLevel_ = 0;
    QPoint press_;
    // Where the press was that opened the menu of what can be done with a row, until its release.
    std::optional<QPoint> itemMenuPress_;
    double wheelRest_ = 0;
    int edgeDirection_ = 0;
    std::size_t edgeLevel_ = 0;
    int edgeSteps_ = 0;
    std::optional<Place> hovered_;
    std::optional<Place> explained_;
    std::unique_ptr<Clock::Timer> hoverTimer_;
    std::unique_ptr<Clock::Timer> wayTimer_;
    std::unique_ptr<Clock::Timer> edgeTimer_;
    std::unique_ptr<Clock::Timer> tipTimer_;
};

} // namespace quillbox
