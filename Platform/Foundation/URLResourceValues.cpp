#include "URLResourceValues.h"

#include "AliasFile.h"
#include "FileAnswers.h"
#include "HiddenNames.h"
#include "Installed.h"
#include "MountInquiry.h"
#include "MountTable.h"
#include "URL.h"
#include "VolumeNames.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace quillbox {

namespace {

    // ".app" alone is a dot file, as programs keep them, and has no extension.
    bool isNameWith(std::string_view extension, std::string_view name)
    {
        return name.size() > extension.size() && name.ends_with(extension);
    }

    std::optional<std::string> volumeName(const std::string& mountPoint)
    {
        VolumeNames* const names = Installed<VolumeNames>::current();
        return names ? names->localizedName(mountPoint) : std::nullopt;
    }

    // Returns nothing if the file system can be asked directly.
    std::optional<Result<URLResourceValues>> valuesInTime(const std::string& path, URLResourceKey keys)
    {
        const bool asksForName = contains(keys, URLResourceKey::volumeLocalizedName);
        const auto asked = asksForName ? keys | URLResourceKey::isVolume : keys;
        const auto answer = askInTime(FileQuestion::Kind::resourceValues, path, static_cast<std::uint32_t>(asked));
        if (!answer)
            return std::nullopt;
        Result<URLResourceValues> values = answer::resourceValues(*answer, path);
        // The helper process knows no volume names, so they are asked for here.
        if (values && asksForName && values->isVolume.value_or(false)) {
            if (const auto place = askInTime(FileQuestion::Kind::canonicalPath, path); place && place->error == 0)
                values->volumeLocalizedName = volumeName(place->bytes);
        }
        return values;
    }

    bool isListedHidden(const URL& url)
    {
        const std::string directory(path::deletingLastPathComponent(url.path()));
        const auto names = hiddenNames(AT_FDCWD, path::appending(directory, ".hidden").c_str());
        return !names.empty() && names.contains(std::string(url.lastPathComponent()));
    }

} // namespace

bool isPackageName(std::string_view name)
{
    constexpr std::array<std::string_view, 5> kSuffixes { ".app", ".prefPane", ".bundle", ".plugin", ".AppDir" };
    return std::any_of(kSuffixes.begin(), kSuffixes.end(), [&](auto suffix) { return isNameWith(suffix, name); });
}

bool packageHidesExtension(std::string_view name)
{
    return isNameWith(".app", name) || isNameWith(".prefPane", name);
}

Result<URLResourceValues> URL::resourceValues(URLResourceKey keys) const
{
    const bool isNameable = !path_.empty() && path_.find('\0') == std::string::npos;
    if (isNameable) {
        if (auto values = valuesInTime(path_, keys))
            return std::move(*values);
    }
    struct statx status { };
    // An automount is not mounted: this is only a look at the entry.
    if (!isNameable
        || ::statx(AT_FDCWD, path_.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC,
                   STATX_TYPE | STATX_MNT_ID, &status)
            != 0)
        return Error::fromErrno(isNameable ? errno : ENOENT, "couldn't look at", path_);

    const std::string_view name = lastPathComponent();
    const bool isDirectory = S_ISDIR(status.stx_mode);
    const bool isPackage = isDirectory && isPackageName(name);
    const auto asked = [keys](URLResourceKey key) { return contains(keys, key); };
    URLResourceValues values;
    if (asked(URLResourceKey::isHidden))
        values.isHidden = isDotName(name) || isListedHidden(*this);
    if (asked(URLResourceKey::isDirectory))
        values.isDirectory = isDirectory;
    if (asked(URLResourceKey::isPackage))
        values.isPackage = isPackage;
    if (asked(URLResourceKey::hasHiddenExtension))
        values.hasHiddenExtension = isPackage && packageHidesExtension(name);
    if (asked(URLResourceKey::isAliasFile))
        values.isAliasFile = S_ISREG(status.stx_mode) && hasAliasSuffix(name) && aliasTarget(path_).has_value();
    if (asked(URLResourceKey::isSymbolicLink))
        values.isSymbolicLink = S_ISLNK(status.stx_mode);
    if (asked(URLResourceKey::isVolume | URLResourceKey::volumeLocalizedName)) {
        const bool isVolume = isDirectory && (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
        if (asked(URLResourceKey::isVolume))
            values.isVolume = isVolume;
        // The mount's own path has no links in it, unlike this one.
        const MountTable::Mount* mount = isVolume ? MountTable::current().find(status.stx_mnt_id) : nullptr;
        if (mount && asked(URLResourceKey::volumeLocalizedName))
            values.volumeLocalizedName = volumeName(mount->mountPoint);
    }
    return values;
}

} // namespace quillbox
