#pragma once

#include "Clock.h"

#include <memory>

class QWidget;

namespace quillbox {

// Ensures that a popup gets pointer and keyboard on X11. A panel that opens our menu on the press of a button holds the
// pointer until the button is released. The toolkit asks for the pointer once and takes a refusal for success, and a
// popup without the pointer never hears of a click outside. Therefore this class asks again until a pointer event
// arrives, for a few seconds at most. In the same way, a program that has grabbed the key which opens our menu holds
// the keyboard until the key is released. The class does nothing on displays without such grabs.
class PopupGrab {
public:
    // `popup` must be on the screen, and stay there until release().
    void take(QWidget& popup);
    // Must be called when some popup got a pointer event, which shows that nobody else holds the pointer.
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
