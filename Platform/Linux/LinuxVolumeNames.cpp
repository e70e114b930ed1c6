#include "LinuxVolumeNames.h"

#include "GLibPointer.h"

#include <gio/gio.h>
#include <gio/gunixmounts.h>

namespace quillbox {

namespace {

    struct MountListRelease {
        void operator()(GList* mounts) const { g_list_free_full(mounts, g_object_unref); }
    };

    std::optional<std::string> nonEmpty(const GLibText& name)
    {
        return name && *name.get() ? std::optional<std::string>(name.get()) : std::nullopt;
    }

} // namespace

std::optional<std::string> LinuxVolumeNames::localizedName(const std::string& mountRoot)
{
    const GLibObject<GVolumeMonitor> monitor(g_volume_monitor_get());
    const std::unique_ptr<GList, MountListRelease> mounts(g_volume_monitor_get_mounts(monitor.get()));
    for (const GList* link = mounts.get(); link; link = link->next) {
        auto* mount = G_MOUNT(link->data);
        const GLibObject<GFile> root(g_mount_get_root(mount));
        const GLibText rootPath(g_file_get_path(root.get()));
        if (rootPath && mountRoot == rootPath.get())
            return nonEmpty(GLibText(g_mount_get_name(mount)));
    }
    const GLibPointer<GUnixMountEntry, g_unix_mount_free> entry(g_unix_mount_at(mountRoot.c_str(), nullptr));
    if (!entry)
        return std::nullopt;
    return nonEmpty(GLibText(g_unix_mount_guess_name(entry.get())));
}

} // namespace quillbox
