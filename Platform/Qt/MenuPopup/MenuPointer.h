#pragma once

#include "Clock.h"

#include <QPoint>
#include <Qt>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

namespace quillbox {

class MenuLevels;

// What the pointer does to an open menu: highlights, opens submenus after a pause, scrolls, chooses. One is
// made for each opening of a menu and given every pointer event, in global logical pixels. Pauses run on
// the installed clock.
class MenuPointer {
public:
    // `levels` must outlive it. `start`: where the pointer was when the menu opened.
    MenuPointer(MenuLevels& levels, QPoint start);

    void moved(QPoint position, Qt::MouseButtons buttons);
    // Inside the menus. A press outside is for the caller.
    void pressed(QPoint position);
    void released(QPoint position);
    void wheelTurned(QPoint position, double pixels);
    // The keyboard took over: what the pointer was about to do no longer happens.
    void cancelPending();
    // The menu has closed.
    void stop();
    // The row to explain, by pointer or keyboard; its tip comes up after a pause.
    void explain(std::size_t level, std::optional<std::size_t> row);

private:
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
    // Whether a button was pressed inside the menus since it was last released.
    bool isPressed_ = false;
    // Whether the press that opened the menu is still held and has become a drag, and went into the menus.
    bool isDragging_ = false;
    bool hasDraggedIn_ = false;
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
