#pragma once

#include <QColor>
#include <QPoint>

#include <memory>
#include <optional>

#include <xcb/xcb.h>

namespace quillbox {

// The X requests of the older tray protocol, on the application's own connection. A request may be sent to a tray that
// has just ended; such errors are ignored here and give "none".
struct TrayProtocol {
    // Returns null if the application has no X server.
    static std::unique_ptr<TrayProtocol> create();

    // Returns the window that owns the tray's selection, or 0. From now on its end is reported by an event.
    xcb_window_t findOwner() const;
    // Asks the tray to take `window`, which becomes visible after that.
    void requestDock(xcb_window_t owner, xcb_window_t window) const;
    // Makes the window show the background of its parent, and clears it.
    void showParentBackground(xcb_window_t window) const;
    // Whether the tray wants windows with an alpha channel.
    bool wantsAlpha(xcb_window_t owner) const;
    // Returns where the window is on the screen, in device pixels; an embedded window does not know this itself.
    std::optional<QPoint> placeOf(xcb_window_t window) const;
    // The colour in which the tray draws symbols, if it tells.
    std::optional<QColor> symbolColour(xcb_window_t owner) const;

    // Whether `event` says that a new tray has started.
    bool isNewTray(const xcb_client_message_event_t& event) const;

    xcb_connection_t* connection = nullptr;
    xcb_window_t root = XCB_WINDOW_NONE;
    xcb_atom_t selection = XCB_ATOM_NONE;
    xcb_atom_t manager = XCB_ATOM_NONE;
    xcb_atom_t opcode = XCB_ATOM_NONE;
    xcb_atom_t visual = XCB_ATOM_NONE;
    xcb_atom_t colours = XCB_ATOM_NONE;
    xcb_atom_t embedInfo = XCB_ATOM_NONE;

private:
    void watchStructure(xcb_window_t window) const;
};

} // namespace quillbox
