#include "FileViewer.h"

#include "GLibPointer.h"
#include "GLibSessionBus.h"

#include <gio/gio.h>

#include <utility>

namespace quillbox {

namespace {

    constexpr const char* kService = "org.freedesktop.FileManager1";
    constexpr const char* kObject = "/org/freedesktop/FileManager1";
    // The bus may have to start the file manager first. A slow one that shows its window after this time has two.
    constexpr int kLongestMilliseconds = 10'000;

    struct Request {
        std::function<void()> otherwise;
        std::weak_ptr<const char> alive;
    };

    void answered(GObject* bus, GAsyncResult* result, gpointer data)
    {
        const std::unique_ptr<Request> request(static_cast<Request*>(data));
        GError* problem = nullptr;
        const GLibPointer<GVariant, g_variant_unref> answer(
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &problem));
        const GLibError error(problem);
        if (error && !request->alive.expired())
            request->otherwise();
    }

} // namespace

void FileViewer::show(const std::string& path, const std::string& activationToken, std::function<void()> otherwise)
{
    const GLibText uri(g_filename_to_uri(path.c_str(), nullptr, nullptr));
    useSessionBusOfGLib();
    const GLibObject<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    // The answer arrives in GLib's main loop.
    if (!bus || !uri || g_main_depth() == 0) {
        otherwise();
        return;
    }
    const char* const uris[] = { uri.get(), nullptr };
    g_dbus_connection_call(bus.get(), kService, kObject, kService, "ShowItems",
                           g_variant_new("(^ass)", uris, activationToken.c_str()), nullptr, G_DBUS_CALL_FLAGS_NONE,
                           kLongestMilliseconds, nullptr, answered,
                           std::make_unique<Request>(Request { std::move(otherwise), alive_ }).release());
}

} // namespace quillbox
