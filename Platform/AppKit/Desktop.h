#pragma once

#include "NSGeometry.h"

namespace quillbox {

class NSAlert;
class NSStatusItem;
class WindowDisplay;

// All that the model needs of a display. The Qt side shows it on a real one; tests record what was asked.
// It decides nothing of Quillbox. Installed once, before the application runs; must outlive it.
class Desktop {
public:
    virtual ~Desktop() = default;

    // Shows the status item's icon, and opens its menu (with a MenuTracking) when it is clicked. Called
    // when the item's menu is set. `item` stays valid until hideStatusItem.
    virtual void showStatusItem(NSStatusItem& item) = 0;
    virtual void hideStatusItem(NSStatusItem& item) = 0;

    // Shows the alert until it is answered. Events go on being handled meanwhile.
    virtual void runModal(const NSAlert& alert) = 0;
    virtual NSRect naturalFrame(const NSAlert& alert) = 0;

    // Shows the application's windows. Lives as long as the desktop.
    virtual WindowDisplay& windows() = 0;

    // Brings the application's windows before those of others.
    virtual void activate() = 0;

    // The event loop; returns the process's exit code once stop() was called.
    virtual int run() = 0;
    virtual void stop() = 0;
};

} // namespace quillbox
