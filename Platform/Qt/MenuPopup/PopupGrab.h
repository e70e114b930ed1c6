#pragma once

#include "Clock.h"

#include <memory>

class QWidget;

namespace quillbox {

// Sees that a popup gets pointer and keyboard on X11. A panel that opens our menu while the button is still
// down holds the pointer until the button is released. The toolkit asks for the grab once and takes a refusal
// for success, and a popup without the pointer never hears of a click outside. So this asks again until the
// pointer is heard of, for a few seconds at most. Does nothing on displays that have no such grabs.
class PopupGrab {
public:
    // `popup` is on the screen, and stays so until release.
    void take(QWidget& popup);
    // Some popup had an event of the pointer, so nobody else holds it any more.
    void pointerWasHeardOf();
    void release();

private:
    void ask(int timesLeft);

    QWidget* popup_ = nullptr;
    std::unique_ptr<Clock::Timer> timer_;
};

} // namespace quillbox
