#pragma once

#include "NSGeometry.h"

#include <functional>
#include <memory>

namespace quillbox {

class NSButton;
class NSOpenPanel;
class NSPopUpButton;
class NSTextField;
class NSWindow;

// What the model needs of a display for its windows: to show them, and to know how large their parts are. It is part of
// the installed Desktop and holds no rule of Quillbox. What the user does reaches the views as calls.
class WindowDisplay {
public:
    virtual ~WindowDisplay() = default;

    // Shows the window if it is not shown, brings it to the front and gives it the keyboard focus. `window` stays valid
    // until close().
    virtual void orderFront(NSWindow& window) = 0;
    // Takes the window off the screen and forgets it.
    virtual void close(NSWindow& window) = 0;
    // Shows `sheet` on `parent`, which takes no input until the sheet is closed. Other windows and menus still do.
    virtual void beginSheet(NSWindow& sheet, NSWindow& parent) = 0;
    // Returns where the top left corner of the window's content is on the screen. It means something only while the
    // window is shown.
    virtual NSPoint contentOrigin(const NSWindow& window) = 0;
    // Something in the window has changed. It is laid out and shown anew before the program next waits for events.
    virtual void setNeedsDisplay(NSWindow& window) = 0;
    // Shows the panel on `parent`. `completion` is called once, later, with its answer; the panel has the chosen files
    // by then.
    virtual void beginOpenPanel(std::shared_ptr<NSOpenPanel> panel, NSWindow& parent,
                                std::function<void(int response)> completion) = 0;

    // Returns the largest content that the window can have on its screen, less its own frame and what panels take.
    virtual NSSize roomFor(const NSWindow& window) = 0;

    // Natural sizes, in points. A text, also a checkbox's, is as wide as the limit or narrower, and as high as that
    // makes it.
    virtual NSSize naturalSize(const NSTextField& field, double widthLimit) = 0;
    virtual NSSize naturalSize(const NSButton& button, double widthLimit) = 0;
    virtual NSSize naturalSize(const NSPopUpButton& button) = 0;
    // The size of the desktop's ordinary font, in points.
    virtual double fontSize() = 0;
    virtual double tableRowHeight() = 0;
    virtual double scrollerWidth(bool isSmall) = 0;
    virtual double scrollViewBorder() = 0;
    // The distances from a tab view's edges to the area of its tabs' views.
    virtual NSEdgeInsets tabViewInsets() = 0;
};

} // namespace quillbox
