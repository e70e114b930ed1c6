#include "MountTable.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace quillbox {

namespace {

    constexpr std::array<std::string_view, 19> kRemoteTypes { "9p",    "afs",   "autofs", "beegfs",  "ceph",
                                                              "cifs",  "coda",  "gfs2",   "gpfs",    "lustre",
                                                              "ncpfs", "nfs",   "nfs4",   "ocfs2",   "orangefs",
                                                              "smb3",  "smbfs", "vboxsf", "virtiofs" };

    constexpr const char* kMountInfo = "/proc/self/mountinfo";

    std::string readTable()
    {
        std::string text;
        const FileDescriptor file(::open(kMountInfo, O_RDONLY | O_CLOEXEC));
        char bytes[16384];
        for (ssize_t count = 0; file && (count = ::read(file.get(), bytes, sizeof bytes)) > 0;)
            text.append(bytes, static_cast<std::size_t>(count));
        return text;
    }

    // The table writes blanks and backslashes as a backslash and three octal digits.
    std::string unescaped(std::string_view field)
    {
        std::string text;
        for (std::size_t i = 0; i < field.size(); ++i) {
            unsigned value = 0;
            if (field[i] == '\\' && i + 3 < field.size()
                && std::from_chars(field.data() + i + 1, field.data() + i + 4, value, 8).ptr == field.data() + i + 4) {
                text += static_cast<char>(value);
                i += 3;
            } else {
                text += field[i];
            }
        }
        return text;
    }

    std::vector<std::string_view> split(std::string_view text, char separator)
    {
        std::vector<std::string_view> parts;
        while (!text.empty()) {
            const std::size_t end = std::min(text.find(separator), text.size());
            parts.push_back(text.substr(0, end));
            text.remove_prefix(std::min(end + 1, text.size()));
        }
        return parts;
    }

    std::string linkToDevice(dev_t device, const std::string& linksDirectory)
    {
        const std::unique_ptr<DIR, int (*)(DIR*)> links(::opendir(linksDirectory.c_str()), ::closedir);
        while (const dirent* link = links ? ::readdir(links.get()) : nullptr) {
            struct stat status { };
            if (link->d_name[0] != '.' && ::fstatat(::dirfd(links.get()), link->d_name, &status, 0) == 0
                && S_ISBLK(status.st_mode) && status.st_rdev == device)
                return link->d_name;
        }
        return {};
    }

    // Returns an empty path if the system does not tell.
    std::string pathOfOwnProgram()
    {
        char target[PATH_MAX];
        const ssize_t length = ::readlink("/proc/self/exe", target, sizeof target);
        return length > 0 ? std::string(target, static_cast<std::size_t>(length)) : std::string();
    }

    bool isAtOrBelow(std::string_view path, std::string_view directory)
    {
        return directory == "/"
            || (path.starts_with(directory) && (path.size() == directory.size() || path[directory.size()] == '/'));
    }

    template <class Number>
    bool readNumber(std::string_view text, Number& number)
    {
        return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
    }

} // namespace

MountTable& MountTable::ofProcess()
{
    static MountTable table;
    return table;
}

const MountTable& MountTable::asLastRead()
{
    return ofProcess();
}

const MountTable& MountTable::current()
{
    MountTable& table = ofProcess();
    if (table.hasChanged())
        table.parse(readTable());
    return table;
}

bool MountTable::hasChanged()
{
    if (!watched_) {
        watched_ = FileDescriptor(::open(kMountInfo, O_RDONLY | O_CLOEXEC));
        return true;
    }
    pollfd change { watched_.get(), POLLPRI, 0 };
    return ::poll(&change, 1, 0) > 0 && (change.revents & (POLLPRI | POLLERR)) != 0;
}

void MountTable::parse(std::string_view mountinfo)
{
    mounts_.clear();
    knownUUIDs_.clear();
    for (const std::string_view line : split(mountinfo, '\n')) {
        // A line is "36 35 98:0 /mnt1 /mnt2 rw,noatime master:1 - ext3 /dev/root rw"; the optional fields end at the
        // dash.
        const std::vector<std::string_view> fields = split(line, ' ');
        if (fields.size() < 7)
            continue;
        Mount mount;
        unsigned major = 0;
        unsigned minor = 0;
        const std::size_t colon = std::min(fields[2].find(':'), fields[2].size() - 1);
        if (!readNumber(fields[0], mount.id) || !readNumber(fields[2].substr(0, colon), major)
            || !readNumber(fields[2].substr(colon + 1), minor))
            continue;
        mount.device = makedev(major, minor);
        mount.mountPoint = unescaped(fields[4]);
        const std::vector<std::string_view> options = split(fields[5], ',');
        mount.isNoSuid = std::find(options.begin(), options.end(), "nosuid") != options.end();
        for (std::size_t i = 6; i + 2 < fields.size(); ++i) {
            if (fields[i] == "-") {
                mount.type = unescaped(fields[i + 1]);
                mount.source = unescaped(fields[i + 2]);
                break;
            }
        }
        mounts_.push_back(std::move(mount));
    }
    findThoseThatMayHang();
}

bool MountTable::Mount::isRemote() const
{
    if (std::find(kRemoteTypes.begin(), kRemoteTypes.end(), type) != kRemoteTypes.end())
        return true;
    // A program serves this mount. If its source is a device or an image of this machine, the program reads only that.
    const bool isServed = type == "fuse" || type.starts_with("fuse.");
    return isServed && (!source.starts_with('/') || source.starts_with("//"));
}

bool MountTable::Mount::isPersons() const
{
    constexpr std::array<std::string_view, 3> kRoots { "/media/", "/run/media/", "/mnt/" };
    return mountPoint == "/mnt"
        || std::any_of(kRoots.begin(), kRoots.end(), [this](auto root) { return mountPoint.starts_with(root); });
}

bool MountTable::Mount::mayHang() const
{
    return type == "fuse" || type == "fuseblk" || type.starts_with("fuse.") || isRemote();
}

void MountTable::findThoseThatMayHang()
{
    static const std::string ownProgram = pathOfOwnProgram();
    std::unordered_map<std::string_view, std::size_t> lastAt;
    for (std::size_t i = 0; i < mounts_.size(); ++i)
        lastAt[mounts_[i].mountPoint] = i;
    thoseThatMayHang_.clear();
    for (const auto& [place, position] : lastAt) {
        if (mounts_[position].mayHang() && !isAtOrBelow(ownProgram, place))
            thoseThatMayHang_.push_back(position);
    }
}

const MountTable::Mount* MountTable::firstThatMayHang(std::string_view path) const
{
    const Mount* first = nullptr;
    for (const std::size_t position : thoseThatMayHang_) {
        const Mount& mount = mounts_[position];
        if (isAtOrBelow(path, mount.mountPoint) && (!first || mount.mountPoint.size() < first->mountPoint.size()))
            first = &mount;
    }
    return first;
}

std::string MountTable::Mount::deviceLink(const std::string& linksDirectory) const
{
    std::string name = linkToDevice(device, linksDirectory);
    struct stat sourceStatus { };
    // Some file systems give their files device numbers that no device has; their source is looked at instead.
    if (name.empty() && source.starts_with("/dev/") && ::stat(source.c_str(), &sourceStatus) == 0
        && S_ISBLK(sourceStatus.st_mode))
        name = linkToDevice(sourceStatus.st_rdev, linksDirectory);
    return name;
}

const std::string& MountTable::fileSystemUUID(const Mount& mount) const
{
    const auto [entry, isNew] = knownUUIDs_.try_emplace(mount.id);
    if (isNew)
        entry->second = mount.deviceLink("/dev/disk/by-uuid");
    return entry->second;
}

const MountTable::Mount* MountTable::find(std::optional<std::uint64_t> mountId) const
{
    const auto found = std::find_if(mounts_.begin(), mounts_.end(),
                                    [&](const Mount& mount) { return mountId && mount.id == *mountId; });
    return found == mounts_.end() ? nullptr : &*found;
}

} // namespace quillbox
