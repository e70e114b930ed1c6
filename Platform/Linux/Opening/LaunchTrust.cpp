#include "LaunchTrust.h"

#include "FileIdentity.h"
#include "GLibPointer.h"
#include "GLibSessionBus.h"
#include "MountTable.h"
#include "PathStatus.h"

#include <gio/gio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace quillbox {

namespace {

    // File systems that store an owner and a mode for each file. Others invent them, or are unknown to us.
    constexpr std::array<std::string_view, 21> kTypesWithModes {
        "bcachefs", "btrfs", "ecryptfs", "erofs", "ext2",           "ext3",       "ext4",
        "f2fs",     "jfs",   "nfs",      "nfs4",  "nilfs2",         "overlay",    "ramfs",
        "reiserfs", "tmpfs", "xfs",      "zfs",   "fuse.gocryptfs", "fuse.encfs", "fuse.cryfs",
    };

    bool isMountOf(const char* path, std::uint64_t mountId)
    {
        const Result<FileStatus> status = lookAtFile(path);
        return status && status->mountId == mountId;
    }

    bool keepsOwnersAndModes(std::uint64_t mountId)
    {
        const MountTable::Mount* mount = MountTable::current().find(mountId);
        if (!mount || std::find(kTypesWithModes.begin(), kTypesWithModes.end(), mount->type) == kTypesWithModes.end())
            return false;
        // Removable disks and file systems of unknown origin are mounted with "nosuid". The home directory may be too,
        // but it is the user's own.
        return !mount->isNoSuid || isMountOf("/", mountId) || isMountOf(g_get_home_dir(), mountId);
    }

    bool isMarkedTrusted(const std::string& path)
    {
        useSessionBusOfGLib();
        constexpr const char* kTrusted = "metadata::trusted";
        const GLibObject<GFile> file(g_file_new_for_path(path.c_str()));
        const GLibObject<GFileInfo> info(
            g_file_query_info(file.get(), kTrusted, G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
        const char* value = info ? g_file_info_get_attribute_string(info.get(), kTrusted) : nullptr;
        return value && std::strcmp(value, "true") == 0;
    }

} // namespace

bool mayBeStarted(const std::string& path)
{
    const Result<struct stat> status = statusOfPath(path);
    if (!status || !S_ISREG(status->st_mode) || !isAccessible(path, X_OK))
        return false;
    const bool isOwn = status->st_uid == geteuid() || status->st_uid == 0;
    const bool isWritableByOthers = (status->st_mode & S_IWOTH) != 0;
    const Result<FileStatus> place = lookAtFile(path);
    if (isOwn && !isWritableByOthers && place && place->mountId && keepsOwnersAndModes(*place->mountId))
        return true;
    // GIO would look at the file without a limit of time, so one on a mount that may hang is not asked for.
    return !mountThatMayHangOn(path, LastLink::followed) && isMarkedTrusted(path);
}

} // namespace quillbox
