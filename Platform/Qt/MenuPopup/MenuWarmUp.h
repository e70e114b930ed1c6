#pragma once

#include "Clock.h"

#include <functional>
#include <memory>
#include <vector>

namespace quillbox {

class MenuPopup;
class MenuPopupEvents;

// Does in advance what only the first menu of a process has to wait for: it loads the font, the style, the icon theme,
// the readers of picture formats and the types of files, and makes a popup's window once. It begins a moment after the
// icon has come to the screen. Each turn of the event loop does one short piece, so that a click in between is served
// before the next piece. It reads data of the toolkit and the desktop only, and leaves no window and no timer behind.
// The MenuPresenter owns it.
class MenuWarmUp {
public:
    // `events` must outlive this object. It gets no events.
    explicit MenuWarmUp(MenuPopupEvents& events);
    ~MenuWarmUp();
    MenuWarmUp(const MenuWarmUp&) = delete;
    MenuWarmUp& operator=(const MenuWarmUp&) = delete;

    // Only the first call has an effect, and none after end().
    void begin();
    // Must be called when a menu is about to open. That menu does what is left.
    void end();

private:
    using Piece = std::function<void()>;
    std::vector<Piece> piecesInReverse();
    void doNext();

    MenuPopupEvents& events_;
    bool hasBegun_ = false;
    // The pieces that are left, the last one first.
    std::vector<Piece> left_;
    std::unique_ptr<Clock::Timer> timer_;
    // A popup that is never shown; null before and after the pieces that use it.
    std::unique_ptr<MenuPopup> sample_;
};

} // namespace quillbox
