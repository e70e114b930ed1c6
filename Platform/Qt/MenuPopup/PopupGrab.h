#pragma once

#include "Clock.h"

#include <memory>

class QWidget;

namespace quillbox {

// Sees that a popup gets pointer and keyboard on X11. A panel that opens our menu while the button is still
// down holds the pointer until the button is released. The toolkit asks for the grab once and takes a refusal
// for success, and a popup without the pointer never hears of a click outside. So this asks again until the
// pointer is heard of, for a few seconds at most. Whoever was told of a key that opens our menu holds the keyboard in
// the same way until the key is released. Does nothing on displays that have no such grabs.
class PopupGrab {
public:
    // `popup` is on the screen, and stays so until release.
    void take(QWidget& popup);
    // Some popup had an event of the pointer, so nobody else holds it any more.
    void pointerWasHeardOf();
    // The popup was opened by a key: an event of the pointer is no reason to stop asking.
    void awaitKeyboard() { awaitsKeyboard_ = true; }
    void release();

private:
    void ask(int timesLeft);

    QWidget* popup_ = nullptr;
    bool awaitsKeyboard_ = false;
    std::unique_ptr<Clock::Timer> timer_;
};

} // namespace quillbox
