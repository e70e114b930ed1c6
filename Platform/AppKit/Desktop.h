#pragma once

#include "NSGeometry.h"

#include <string>

namespace quillbox {

class NSAlert;
class NSStatusItem;
class WindowDisplay;

// Everything that the model needs of a display. The Qt side implements it on a real one; tests implement one that
// records what was asked. It holds no rule of Quillbox. It is installed once, before the application runs, and must
// outlive it.
class Desktop {
public:
    virtual ~Desktop() = default;

    // Shows the status item's icon, and opens its menu (with a MenuTracking) when it is clicked. Called when the item's
    // menu is set. `item` stays valid until hideStatusItem().
    virtual void showStatusItem(NSStatusItem& item) = 0;
    virtual void hideStatusItem(NSStatusItem& item) = 0;

    // Shows the alert and returns once it is answered. Other events are handled meanwhile.
    virtual void runModal(const NSAlert& alert) = 0;
    // Returns the frame that the alert takes on the screen if none is set, in points.
    virtual NSRect naturalFrame(const NSAlert& alert) = 0;

    // Returns the part that shows the application's windows. It lives as long as the desktop.
    virtual WindowDisplay& windows() = 0;

    // Puts the text on the clipboard, from which other programs paste it.
    virtual void copyText(const std::string& text) = 0;

    // Brings the application's windows in front of those of other programs.
    virtual void activate() = 0;

    // Runs the event loop. Returns the process's exit code after stop() was called.
    virtual int run() = 0;
    virtual void stop() = 0;
};

} // namespace quillbox
