#include "LinuxVolumeNames.h"

#include "GLibPointer.h"
#include "GLibSessionBus.h"
#include "MountTable.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <string_view>
#include <vector>

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

    // In the link's name, characters that a file name can't have are written as "\\x" and two hexadecimal digits.
    std::string decodedLabel(std::string_view link)
    {
        std::string label;
        for (std::size_t i = 0; i < link.size(); ++i) {
            unsigned char byte = 0;
            const char* end = link.data() + std::min(i + 4, link.size());
            if (link.substr(i).starts_with("\\x") && std::from_chars(link.data() + i + 2, end, byte, 16).ptr == end
                && link.size() >= i + 4) {
                label += static_cast<char>(byte);
                i += 3;
            } else {
                label += link[i];
            }
        }
        return label;
    }

    // GIO's volume monitor looks at every mount in the usual places, to decide whether it is shown.
    bool mayMonitorLook(const std::vector<MountTable::Mount>& table)
    {
        return std::none_of(table.begin(), table.end(), [](const MountTable::Mount& mount) {
            return mount.mayHang() && !mount.mountPoint.starts_with("/run/user/")
                && !mount.mountPoint.starts_with("/proc/");
        });
    }

    std::optional<std::string> nameOfMonitor(const std::string& mountRoot)
    {
        useSessionBusOfGLib();
        const GLibObject<GVolumeMonitor> monitor(g_volume_monitor_get());
        const std::unique_ptr<GList, MountListRelease> mounts(g_volume_monitor_get_mounts(monitor.get()));
        for (const GList* link = mounts.get(); link; link = link->next) {
            auto* mount = G_MOUNT(link->data);
            const GLibObject<GFile> root(g_mount_get_root(mount));
            const GLibText rootPath(g_file_get_path(root.get()));
            if (rootPath && mountRoot == rootPath.get())
                return nonEmpty(GLibText(g_mount_get_name(mount)));
        }
        return std::nullopt;
    }

} // namespace

std::optional<std::string> LinuxVolumeNames::localizedName(const std::string& mountRoot)
{
    const std::vector<MountTable::Mount>& table = MountTable::current().mounts();
    // Of several mounts at one place, the last one is visible.
    const auto mounted = std::find_if(table.rbegin(), table.rend(),
                                      [&](const MountTable::Mount& mount) { return mount.mountPoint == mountRoot; });
    if (mounted == table.rend())
        return std::nullopt;
    if (const std::string link = mounted->deviceLink(labels_); !link.empty())
        return decodedLabel(link);
    if (mayMonitorLook(table)) {
        if (auto name = nameOfMonitor(mountRoot))
            return name;
    }
    const GLibPointer<GUnixMountEntry, g_unix_mount_free> entry(g_unix_mount_at(mountRoot.c_str(), nullptr));
    if (!entry)
        return std::nullopt;
    return nonEmpty(GLibText(g_unix_mount_guess_name(entry.get())));
}

} // namespace quillbox
