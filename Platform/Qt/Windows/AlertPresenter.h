#pragma once

#include "NSAlert.h"

#include <vector>

class QDialog;

namespace quillbox {

// Shows alerts as dialogs of our own: icon, bold message, informative text, one default button. Texts are
// shown letter by letter, can be selected and wrap anywhere; what is too tall for the screen scrolls.
class AlertPresenter {
public:
    // Returns when the alert was answered or the application stops. Handles events meanwhile.
    void run(const NSAlert& alert);
    // The frame the alert has when none is set: its natural width, as tall as its texts need, in the middle of
    // the screen the pointer is on.
    static NSRect naturalFrame(const NSAlert& alert);

    bool isRunning() const { return !running_.empty(); }
    // Brings the running alert before everything else.
    void raise();

private:
    // Innermost last; an alert may come up while another one runs.
    std::vector<QDialog*> running_;
};

} // namespace quillbox
