#include "BookmarkSearch.h"

#include "Bookmark.h"
#include "FilesNotFound.h"
#include "LiveFileReferences.h"
#include "MountInquiry.h"
#include "MountTable.h"
#include "URL.h"

#include <algorithm>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <map>
#include <memory>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace quillbox {

namespace {

    struct DirectoryCloser {
        void operator()(DIR* directory) const { ::closedir(directory); }
    };
    using Directory = std::unique_ptr<DIR, DirectoryCloser>;

    // What is left of the limits that searches share, and what they have found so far.
    struct Bound {
        int places = kMaximumSearchedPlaces;
        int entries = kMaximumSearchedEntries;
        int directories = kMaximumSearchedDirectories;
        std::map<Data, std::optional<std::string>> answers;

        bool isUsedUp() const { return entries <= 0 || directories <= 0; }
    };

    // Null while no BookmarkSearchBound lives.
    std::unique_ptr<Bound>& currentBound()
    {
        static std::unique_ptr<Bound> bound;
        return bound;
    }

    FilesNotFound& filesNotFound()
    {
        static FilesNotFound files;
        return files;
    }

    class Search {
    public:
        Search(const Bookmark& wanted, Bound& bound) : wanted_(wanted), bound_(bound) { }

        // Finds the file itself in any volume that may be its own, at any tail of its path, because it is not known
        // where its volume was mounted.
        std::optional<std::string> atSamePlace();
        // Returns the places in the volume that the path may have meant, if the volume has left its mount point.
        std::vector<std::string> placesInVolume();
        // Whether an entry of the same kind is there now.
        bool isTaken(const std::string& place);
        // Searches around the place, as findMovedFileAround() says.
        std::optional<std::string> around(const std::string& place);
        // Does the same in bounded time, if the place is on a mount that may hang.
        std::optional<std::string> aroundInTime(const std::string& place);
        bool isAskedElsewhere() const { return isAskedElsewhere_; }
        // The directories that around() has looked through, each as it was before.
        std::vector<SearchedDirectory>& searched() { return searched_; }

    private:
        bool isWanted(const std::string& path);
        bool mayHoldWanted(const FileStatus& directory) const;
        // `resolve` is the member of the same name that openat2() takes.
        Directory open(int base, const std::string& path, std::uint64_t resolve);
        std::optional<std::string> inDirectory(DIR* directory, const std::string& path,
                                               std::vector<std::string>* subdirectories);

        const Bookmark& wanted_;
        Bound& bound_;
        std::vector<SearchedDirectory> searched_;
        bool isAskedElsewhere_ = false;
    };

    bool Search::isWanted(const std::string& path)
    {
        const Result<FileStatus> status = lookAtFile(path);
        if (!status || status->identity.inode != wanted_.identity.inode)
            return false;
        const Result<Bookmark> found = Bookmark::ofPath(path);
        return found && found->isSameFile(wanted_);
    }

    std::optional<std::string> Search::atSamePlace()
    {
        // The list is copied, since looking at a file may change the table.
        const std::vector<MountTable::Mount> mounts = MountTable::current().mounts();
        for (const MountTable::Mount& mount : mounts) {
            if (mount.isRemote()
                || (!wanted_.fileSystemUUID.empty()
                    && MountTable::current().fileSystemUUID(mount) != wanted_.fileSystemUUID))
                continue;
            std::string_view tail = wanted_.path;
            while (true) {
                const std::string place = path::appending(mount.mountPoint, tail);
                if (--bound_.places < 0)
                    return std::nullopt;
                if (isWanted(place))
                    return place;
                if (tail.empty())
                    break;
                tail.remove_prefix(std::min(tail.find('/', 1), tail.size()));
            }
        }
        return std::nullopt;
    }

    std::vector<std::string> Search::placesInVolume()
    {
        if (wanted_.fileSystemUUID.empty())
            return {};
        std::string ancestor(path::deletingLastPathComponent(wanted_.path));
        Result<FileStatus> status = lookAtFile(ancestor);
        while (!status && ancestor != "/") {
            ancestor = path::deletingLastPathComponent(ancestor);
            status = lookAtFile(ancestor);
        }
        const MountTable& table = MountTable::current();
        const MountTable::Mount* present = status ? table.find(status->mountId) : nullptr;
        if (!present || table.fileSystemUUID(*present) == wanted_.fileSystemUUID)
            return {};
        // The part of the path that is gone begins with the old mount point, or with the directory that it was made in.
        std::string_view tail = std::string_view(wanted_.path).substr(ancestor == "/" ? 0 : ancestor.size());
        std::vector<std::string> places;
        for (int i = 0; i < 2 && !tail.empty(); ++i) {
            for (const MountTable::Mount& mount : table.mounts()) {
                if (!mount.isRemote() && table.fileSystemUUID(mount) == wanted_.fileSystemUUID)
                    places.push_back(path::appending(mount.mountPoint, tail));
            }
            tail.remove_prefix(std::min(tail.find('/', 1), tail.size()));
        }
        return places;
    }

    bool Search::isTaken(const std::string& place)
    {
        const Result<FileStatus> status = lookAtFile(place);
        return status && status->isDirectory == wanted_.isDirectory;
    }

    bool Search::mayHoldWanted(const FileStatus& directory) const
    {
        const MountTable& table = MountTable::current();
        const MountTable::Mount* mount = table.find(directory.mountId);
        if (!mount)
            return true;
        const std::string& uuid = table.fileSystemUUID(*mount);
        return !mount->isRemote() && (wanted_.fileSystemUUID.empty() || uuid.empty() || uuid == wanted_.fileSystemUUID);
    }

    Directory Search::open(int base, const std::string& path, std::uint64_t resolve)
    {
        if (bound_.isUsedUp())
            return nullptr;
        --bound_.directories;
        open_how how {};
        how.flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
        how.resolve = resolve;
        const auto descriptor = static_cast<int>(::syscall(SYS_openat2, base, path.c_str(), &how, sizeof how));
        if (descriptor < 0)
            return nullptr;
        Directory directory(::fdopendir(descriptor));
        if (!directory)
            ::close(descriptor);
        return directory;
    }

    std::optional<std::string> Search::inDirectory(DIR* directory, const std::string& path,
                                                   std::vector<std::string>* subdirectories)
    {
        while (directory && bound_.entries > 0) {
            const dirent* entry = ::readdir(directory);
            if (!entry)
                break;
            --bound_.entries;
            if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0)
                continue;
            if (entry->d_ino == wanted_.identity.inode) {
                const std::string candidate = path::appending(path, entry->d_name);
                if (isWanted(candidate))
                    return candidate;
            }
            if (subdirectories && (entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN))
                subdirectories->emplace_back(entry->d_name);
        }
        return std::nullopt;
    }

    std::optional<std::string> Search::around(const std::string& place)
    {
        const std::string near(path::deletingLastPathComponent(place));
        const std::string above(path::deletingLastPathComponent(near));
        const std::optional<FileStatus> nearStatus = searched_.emplace_back(SearchedDirectory::at(near)).status;
        if (nearStatus && mayHoldWanted(*nearStatus)) {
            const Directory directory = open(AT_FDCWD, near, 0);
            if (std::optional<std::string> found = inDirectory(directory.get(), near, nullptr))
                return found;
        }
        const std::optional<FileStatus> aboveStatus = searched_.emplace_back(SearchedDirectory::at(above)).status;
        const bool isCrossing = nearStatus && aboveStatus && nearStatus->mountId != aboveStatus->mountId;
        if (near == "/" || !aboveStatus || isCrossing || !mayHoldWanted(*aboveStatus))
            return std::nullopt;

        std::vector<std::string> names;
        const Directory parent = open(AT_FDCWD, above, 0);
        if (std::optional<std::string> found = inDirectory(parent.get(), above, &names))
            return found;
        for (const std::string& name : names) {
            if (bound_.isUsedUp())
                break;
            if (nearStatus && name == path::lastPathComponent(near))
                continue;
            searched_.push_back(SearchedDirectory::at(path::appending(above, name)));
            const Directory directory = open(::dirfd(parent.get()), name, RESOLVE_NO_XDEV | RESOLVE_NO_SYMLINKS);
            if (std::optional<std::string> found = inDirectory(directory.get(), path::appending(above, name), nullptr))
                return found;
        }
        return std::nullopt;
    }

    std::optional<std::string> Search::aroundInTime(const std::string& place)
    {
        const Data bookmark = wanted_.encoded();
        auto answer = askInTime(FileQuestion::Kind::movedFile, place, 0, { bookmark.begin(), bookmark.end() });
        if (!answer)
            return around(place);
        isAskedElsewhere_ = true;
        return answer->error == 0 ? std::optional(std::move(answer->bytes)) : std::nullopt;
    }

    // A search has these steps:
    //
    // 1. mounts of the file's file system at other places: the file itself at the same place in the volume; where the
    //    UUID says that it is the same volume, whatever is there;
    // 2. the file itself in its directory, in the one above, and in that one's direct sub-directories;
    // 3. the same around its place on the other mounts of 1, where the UUID is known.
    //
    // Steps 2 and 3 are left out where they have failed before and their directories are as they were.
    std::optional<std::string> sought(const Bookmark& bookmark, const Data& key, Bound& bound)
    {
        Search search(bookmark, bound);
        if (std::optional<std::string> path = search.atSamePlace())
            return path;
        const std::vector<std::string> places = search.placesInVolume();
        for (const std::string& place : places) {
            if (search.isTaken(place))
                return place;
        }
        const bool hasToWait = filesNotFound().hasToWait(key);
        if (filesNotFound().contains(key, places))
            return std::nullopt;
        if (hasToWait) {
            filesNotFound().putOff(key);
            return std::nullopt;
        }
        const bool isBoundWhole = bound.entries == kMaximumSearchedEntries;
        if (std::optional<std::string> path = search.aroundInTime(bookmark.path))
            return path;
        for (const std::string& place : places) {
            if (std::optional<std::string> path = search.aroundInTime(place))
                return path;
        }
        // A search that had too little left because of others is made again, before theirs.
        if (!isBoundWhole && bound.isUsedUp())
            filesNotFound().putOff(key);
        else if (!search.isAskedElsewhere())
            filesNotFound().add(key, places, std::move(search.searched()));
        return std::nullopt;
    }

} // namespace

std::optional<std::string> findMovedFileAround(const Bookmark& bookmark, const std::string& place)
{
    Bound bound;
    return Search(bookmark, bound).around(place);
}

BookmarkSearchBound::BookmarkSearchBound() : isOutermost_(!currentBound())
{
    if (isOutermost_)
        currentBound() = std::make_unique<Bound>();
}

BookmarkSearchBound::~BookmarkSearchBound()
{
    if (!isOutermost_)
        return;
    currentBound().reset();
    filesNotFound().endOpening();
}

std::optional<std::string> findMovedFile(const Bookmark& bookmark)
{
    // No file has the inode 0, so a bookmark with it knows a place and no file.
    if (bookmark.identity.inode == 0)
        return std::nullopt;
    const auto isWanted = [&](const FileIdentity& identity) {
        Bookmark candidate = bookmark;
        candidate.identity = identity;
        return identity.inode == bookmark.identity.inode && candidate.isSameFile(bookmark);
    };
    if (std::optional<std::string> path = pathOfLiveReference(isWanted))
        return path;

    const BookmarkSearchBound bound;
    const Data key = bookmark.encoded();
    const auto [answer, isNew] = currentBound()->answers.try_emplace(key);
    if (isNew)
        answer->second = sought(bookmark, key, *currentBound());
    return answer->second;
}

} // namespace quillbox
