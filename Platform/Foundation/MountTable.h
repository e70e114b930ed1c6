#pragma once

#include "FileDescriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <sys/types.h>

namespace quillbox {

// Where file systems are mounted, as this process sees them. Asked for by whoever needs to know a
// volume's root, or which mounts may hang. The system's table is read again only when the system says that it has
// changed, so a question costs one poll(). Where there is no such table, nothing is mounted anywhere.
class MountTable {
public:
    struct Mount {
        std::uint64_t id = 0;
        dev_t device = 0;
        // Absolute, without links.
        std::string mountPoint;
        std::string type;
        // What is mounted: a device, an image file, "host:/path", or a word that means nothing.
        std::string source;
        // Whether programs on it get no rights from who owns them, as where others may have made them.
        bool isNoSuid = false;

        // Whether asking it for anything may wait for another computer, or for a program that does.
        bool isRemote() const;
        // Whether it is where desktops and people mount what they plug in or reach over a network.
        bool isPersons() const;
        // Whether its answer may never come: what another computer, or any program, has to give. Told by the type
        // alone.
        bool mayHang() const;
        // The name of the link to its device among those in the directory ("/dev/disk/by-uuid",
        // "/dev/disk/by-label"); empty where there is none. Does not touch the mount.
        std::string deviceLink(const std::string& linksDirectory) const;
    };

    // The process's table, brought up to date. The reference is good until the next call.
    static const MountTable& current();
    // The same as the last call of current() gave it, without asking the system.
    static const MountTable& asLastRead();

    // Null where no mount has the id.
    const Mount* find(std::optional<std::uint64_t> mountId) const;
    // In the order of mounting.
    const std::vector<Mount>& mounts() const { return mounts_; }
    bool hasAnyThatMayHang() const { return !thoseThatMayHang_.empty(); }
    // The mount that may hang which a path meets first on its way from the root; null where it meets none. The path
    // must be absolute, with no links, ".", ".." or doubled slashes in it. The mounts that the root directory and
    // this program's own file lie on are no such mounts: without them there would be nobody to ask.
    const Mount* firstThatMayHang(std::string_view path) const;
    // The UUID of what is mounted, by the links that the system keeps; empty where it is not known. `mount` is
    // one of these, or a copy.
    const std::string& fileSystemUUID(const Mount& mount) const;

    // Reads the lines of a mountinfo file; lines that can't be read are passed over.
    void parse(std::string_view mountinfo);

private:
    static MountTable& ofProcess();
    bool hasChanged();
    void findThoseThatMayHang();

    FileDescriptor watched_;
    std::vector<Mount> mounts_;
    // Positions in mounts_; of several mounts at one place only the last, which is the one that is met.
    std::vector<std::size_t> thoseThatMayHang_;
    mutable std::unordered_map<std::uint64_t, std::string> knownUUIDs_;
};

} // namespace quillbox
