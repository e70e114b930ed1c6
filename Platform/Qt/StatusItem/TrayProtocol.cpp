#include "TrayProtocol.h"

#include "XcbReply.h"

#include <QGuiApplication>
#include <QtGui/qguiapplication_platform.h>

#include <cstdlib>
#include <string>

namespace quillbox {

namespace {

    void ignoreError(xcb_connection_t* connection, xcb_void_cookie_t cookie)
    {
        std::free(xcb_request_check(connection, cookie));
    }

    const xcb_screen_t* screenNumber(xcb_connection_t* connection, int number)
    {
        xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
        while (number-- > 0 && screens.rem > 1)
            xcb_screen_next(&screens);
        return screens.data;
    }

    // Returns the depth of a visual of the screen, or 0 if it has none with that id.
    int depthOfVisual(xcb_connection_t* connection, xcb_window_t root, xcb_visualid_t id)
    {
        for (auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection)); screens.rem;
             xcb_screen_next(&screens)) {
            if (screens.data->root != root)
                continue;
            for (auto depths = xcb_screen_allowed_depths_iterator(screens.data); depths.rem; xcb_depth_next(&depths)) {
                for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem;
                     xcb_visualtype_next(&visuals)) {
                    if (visuals.data->visual_id == id)
                        return depths.data->depth;
                }
            }
        }
        return 0;
    }

    // Returns `count` 32-bit values of a property, or null if it has fewer.
    auto property(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name, xcb_atom_t type, quint32 count)
    {
        const auto cookie = xcb_get_property(connection, 0, window, name, type, 0, count);
        auto reply = owned(xcb_get_property_reply(connection, cookie, nullptr));
        if (reply && (reply->format != 32 || reply->value_len < count))
            reply.reset();
        return reply;
    }

} // namespace

std::unique_ptr<TrayProtocol> TrayProtocol::create()
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection())
        return nullptr;
    int number = 0;
    char* host = nullptr;
    int display = 0;
    if (xcb_parse_display(nullptr, &host, &display, &number))
        std::free(host);

    auto protocol = std::make_unique<TrayProtocol>();
    protocol->connection = x11->connection();
    protocol->root = screenNumber(protocol->connection, number)->root;
    protocol->selection = atomOf(protocol->connection, "_NET_SYSTEM_TRAY_S" + std::to_string(number));
    protocol->manager = atomOf(protocol->connection, "MANAGER");
    protocol->opcode = atomOf(protocol->connection, "_NET_SYSTEM_TRAY_OPCODE");
    protocol->visual = atomOf(protocol->connection, "_NET_SYSTEM_TRAY_VISUAL");
    protocol->colours = atomOf(protocol->connection, "_NET_SYSTEM_TRAY_COLORS");
    protocol->embedInfo = atomOf(protocol->connection, "_XEMBED_INFO");
    // New trays announce themselves on the root window.
    protocol->watchStructure(protocol->root);
    return protocol;
}

void TrayProtocol::watchStructure(xcb_window_t window) const
{
    const auto cookie = xcb_get_window_attributes(connection, window);
    const auto attributes = owned(xcb_get_window_attributes_reply(connection, cookie, nullptr));
    // The toolkit shares the connection, so the events that it selected on the window are kept.
    const quint32 mask = (attributes ? attributes->your_event_mask : 0) | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    ignoreError(connection, xcb_change_window_attributes_checked(connection, window, XCB_CW_EVENT_MASK, &mask));
}

xcb_window_t TrayProtocol::findOwner() const
{
    // The server is grabbed, so that an owner can't end between being found and being watched.
    xcb_grab_server(connection);
    const auto cookie = xcb_get_selection_owner(connection, selection);
    const auto reply = owned(xcb_get_selection_owner_reply(connection, cookie, nullptr));
    const xcb_window_t owner = reply ? reply->owner : xcb_window_t { XCB_WINDOW_NONE };
    if (owner != XCB_WINDOW_NONE)
        watchStructure(owner);
    xcb_ungrab_server(connection);
    xcb_flush(connection);
    return owner;
}

void TrayProtocol::requestDock(xcb_window_t owner, xcb_window_t window) const
{
    constexpr quint32 kProtocolVersion = 0;
    constexpr quint32 kWantsToBeMapped = 1;
    const quint32 info[] = { kProtocolVersion, kWantsToBeMapped };
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, embedInfo, embedInfo, 32, 2, info);

    constexpr quint32 kRequestDock = 0;
    xcb_client_message_event_t message {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = owner;
    message.type = opcode;
    message.data.data32[0] = XCB_CURRENT_TIME;
    message.data.data32[1] = kRequestDock;
    message.data.data32[2] = window;
    ignoreError(
        connection,
        xcb_send_event_checked(connection, 0, owner, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&message)));
}

void TrayProtocol::showParentBackground(xcb_window_t window) const
{
    const quint32 background = XCB_BACK_PIXMAP_PARENT_RELATIVE;
    ignoreError(connection, xcb_change_window_attributes_checked(connection, window, XCB_CW_BACK_PIXMAP, &background));
    ignoreError(connection, xcb_clear_area_checked(connection, 0, window, 0, 0, 0, 0));
}

bool TrayProtocol::wantsAlpha(xcb_window_t owner) const
{
    const auto reply = property(connection, owner, visual, XCB_ATOM_VISUALID, 1);
    if (!reply)
        return false;
    const auto id = *static_cast<const xcb_visualid_t*>(xcb_get_property_value(reply.get()));
    return depthOfVisual(connection, root, id) == 32;
}

std::optional<QPoint> TrayProtocol::placeOf(xcb_window_t window) const
{
    const auto cookie = xcb_translate_coordinates(connection, window, root, 0, 0);
    const auto reply = owned(xcb_translate_coordinates_reply(connection, cookie, nullptr));
    return reply ? std::optional(QPoint(reply->dst_x, reply->dst_y)) : std::nullopt;
}

std::optional<QColor> TrayProtocol::symbolColour(xcb_window_t owner) const
{
    // The property begins with red, green and blue of the ordinary colour, 16 bits each.
    const auto reply = property(connection, owner, colours, XCB_ATOM_CARDINAL, 3);
    if (!reply)
        return std::nullopt;
    const auto* channel = static_cast<const quint32*>(xcb_get_property_value(reply.get()));
    return QColor::fromRgba64(static_cast<quint16>(channel[0]), static_cast<quint16>(channel[1]),
                              static_cast<quint16>(channel[2]));
}

bool TrayProtocol::isNewTray(const xcb_client_message_event_t& event) const
{
    return event.type == manager && event.format == 32 && event.data.data32[1] == selection;
}

} // namespace quillbox
