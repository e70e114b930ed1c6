#include "LinuxPlaces.h"

#include "FileManager.h"
#include "Installed.h"
#include "MountTable.h"
#include "PathRoute.h"
#include "PlaceBookmarks.h"
#include "Unicode.h"
#include "VolumeNames.h"

#include <algorithm>

namespace quillbox {

namespace {

    using Kind = Place::Kind;

    constexpr SearchPathDirectory kStandardDirectories[] = {
        SearchPathDirectory::desktopDirectory,   SearchPathDirectory::documentDirectory,
        SearchPathDirectory::downloadsDirectory, SearchPathDirectory::musicDirectory,
        SearchPathDirectory::picturesDirectory,  SearchPathDirectory::moviesDirectory,
    };

    class PlaceList {
    public:
        // Adds a directory, unless it is listed already or does not exist. Without a title, the place gets the name of
        // the directory.
        void add(Kind kind, const std::string& path, const std::string& title = {})
        {
            const bool mayHang = router_.mountThatMayHangOn(path, LastLink::followed).has_value();
            if (!isListed(path) && (mayHang || mayBeDirectory(path)))
                list_.push_back({ kind, title.empty() ? nameOf(path) : title, path, mayHang });
        }

        std::vector<Place> take() { return std::move(list_); }

    private:
        bool isListed(const std::string& path) const
        {
            return std::any_of(list_.begin(), list_.end(), [&](const Place& place) { return place.path == path; });
        }

        // One that can't be looked at is listed: opening it tells why.
        static bool mayBeDirectory(const std::string& path)
        {
            const Result<FileKind> kind = FileManager::defaultManager().kind(path);
            return kind ? *kind == FileKind::directory : !kind.error().isNotThere();
        }

        static std::string nameOf(const std::string& path)
        {
            return unicode::displayText(path::lastPathComponent(path));
        }

        PathRouter router_;
        std::vector<Place> list_;
    };

    void addStandardDirectories(PlaceList& list)
    {
        for (const SearchPathDirectory directory : kStandardDirectories) {
            for (const URL& url : FileManager::defaultManager().urls(directory, SearchPathDomainMask::userDomainMask))
                list.add(Kind::standardDirectory, url.path());
        }
    }

    void addVolumes(PlaceList& list)
    {
        VolumeNames* const names = Installed<VolumeNames>::current();
        // The table is copied, since asking for names may change it.
        const std::vector<MountTable::Mount> mounts = MountTable::current().mounts();
        for (const MountTable::Mount& mount : mounts) {
            if (mount.isPersons())
                list.add(Kind::volume, mount.mountPoint,
                         names ? names->localizedName(mount.mountPoint).value_or("") : "");
        }
    }

} // namespace

std::vector<Place> LinuxPlaces::places()
{
    const std::string home = FileManager::defaultManager().homeDirectoryForCurrentUser().path();
    PlaceList list;
    list.add(Kind::home, home, "Home");
    addStandardDirectories(list);
    list.add(Kind::fileSystem, "/", "File System");
    for (const PlaceBookmark& bookmark : placeBookmarks(home, configHome_, dataHome_))
        list.add(Kind::bookmark, bookmark.path, bookmark.title);
    addVolumes(list);
    return list.take();
}

} // namespace quillbox
