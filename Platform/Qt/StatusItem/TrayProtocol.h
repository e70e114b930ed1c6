#pragma once

#include <QColor>
#include <QPoint>

#include <memory>
#include <optional>

#include <xcb/xcb.h>

namespace quillbox {

// The X requests of the older tray protocol, on the application's own connection. Every request may meet a
// tray that has just died; such errors are taken in here and mean "none".
struct TrayProtocol {
    // Null where the application is not on an X server.
    static std::unique_ptr<TrayProtocol> create();

    // The window that owns the tray's selection, watched for its end from now on; 0 for none.
    xcb_window_t findOwner() const;
    // Asks the tray to take `window`, which becomes visible once it has.
    void requestDock(xcb_window_t owner, xcb_window_t window) const;
    // Makes the window show through to what its parent shows, and clears it to that.
    void showParentBackground(xcb_window_t window) const;
    // Whether the tray wants windows with an alpha channel.
    bool wantsAlpha(xcb_window_t owner) const;
    // Where on the screen the window is, in device pixels; an embedded window is not told of it.
    std::optional<QPoint> placeOf(xcb_window_t window) const;
    // The colour that the tray draws symbols in, where it says so.
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
