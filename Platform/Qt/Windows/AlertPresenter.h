#pragma once

#include "NSAlert.h"

#include <vector>

class QDialog;

namespace quillbox {

// Shows alerts as dialogs of our own: icon, bold message, informative text and one default button. Texts are shown
// literally, can be selected, and wrap anywhere; a dialog that is too tall for the screen scrolls.
class AlertPresenter {
public:
    // Returns when the alert was answered or the application stops. Other events are handled meanwhile.
    void run(const NSAlert& alert);
    // Returns the frame of an alert for which none is set: its natural width, as tall as its texts need, in the middle
    // of the screen with the pointer.
    static NSRect naturalFrame(const NSAlert& alert);

    bool isRunning() const { return !running_.empty(); }
    // Brings the running alert to the front.
    void raise();

private:
    // The innermost alert is last; an alert may appear while another one runs.
    std::vector<QDialog*> running_;
};

} // namespace quillbox
