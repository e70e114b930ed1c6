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

// The mounted file systems as this process sees them. It tells where a volume's root is and which mounts may hang. The
// system's table is read again only when the system says that it has changed, so a question costs one poll(). If the
// system has no such table, nothing counts as mounted.
class MountTable {
public:
    struct Mount {
        std::uint64_t id = 0;
        dev_t device = 0;
        // Absolute, without links.
        std::string mountPoint;
        std::string type;
        // What is mounted: a device, an image file, "host:/path", or a word without meaning.
        std::string source;
        // Whether its files can't give their owners' rights to a program ("nosuid"), as on volumes that others may have
        // written.
        bool isNoSuid = false;

        // Whether asking it for anything may wait for another computer, or for a program that does.
        bool isRemote() const;
        // Whether it lies where desktops and users mount what they plug in or reach over a network.
        bool isPersons() const;
        // Whether its answer may never come, because another computer or a program has to give it. The file system's
        // type alone decides.
        bool mayHang() const;
        // Returns the name of the link to its device among those in the directory ("/dev/disk/by-uuid",
        // "/dev/disk/by-label"), or an empty text. The mount itself is not touched.
        std::string deviceLink(const std::string& linksDirectory) const;
    };

    // Returns the table of this process, brought up to date. What it refers to is valid until the next call.
    static const MountTable& current();
    // Returns the table as the last call of current() left it, without asking the system.
    static const MountTable& asLastRead();

    // Returns null if no mount has the id.
    const Mount* find(std::optional<std::uint64_t> mountId) const;
    // The mounts in the order in which they were mounted.
    const std::vector<Mount>& mounts() const { return mounts_; }
    bool hasAnyThatMayHang() const { return !thoseThatMayHang_.empty(); }
    // Returns the first mount that may hang on the path's way from the root, or null if there is none. The path must be
    // absolute, without links, ".", ".." or doubled slashes. The mounts of the root directory and of this program's own
    // file never count: if those hung, the program could not run at all.
    const Mount* firstThatMayHang(std::string_view path) const;
    // Returns the UUID of the mounted file system, found by the links that the system keeps; empty if it is not known.
    // `mount` is one of this table's mounts, or a copy of one.
    const std::string& fileSystemUUID(const Mount& mount) const;

    // Reads the lines of a mountinfo file (see proc(5)); lines that can't be understood are skipped.
    void parse(std::string_view mountinfo);

private:
    static MountTable& ofProcess();
    bool hasChanged();
    void findThoseThatMayHang();

    FileDescriptor watched_;
    std::vector<Mount> mounts_;
    // Indexes into mounts_. Of several mounts at one place only the last is kept, because it hides the others.
    std::vector<std::size_t> thoseThatMayHang_;
    mutable std::unordered_map<std::uint64_t, std::string> knownUUIDs_;
};

} // namespace quillbox
