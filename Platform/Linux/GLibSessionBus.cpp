#include "GLibSessionBus.h"

#include "GLibPointer.h"

#include <gio/gio.h>

namespace quillbox {

void useSessionBusOfGLib()
{
    // GLib has one connection for the whole process, which lives as long as somebody holds it.
    static GLibObject<GDBusConnection> bus;
    if (bus && !g_dbus_connection_is_closed(bus.get()))
        return;
    bus.reset();
    bus.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (bus)
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
}

} // namespace quillbox
