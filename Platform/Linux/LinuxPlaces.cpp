#include "LinuxPlaces.h"

#include "FileManager.h"
#include "Installed.h"
#include "MountTable.h"
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
        // Without a title, the place is called as its directory is. A directory that is listed already stays as it is.
        void add(Kind kind, const std::string& path, const std::string& title = {})
        {
            const bool isListed =
                std::any_of(list_.begin(), list_.end(), [&](const Place& place) { return place.path == path; });
            if (!isListed)
                list_.push_back({ kind, title.empty() ? nameOf(path) : title, path });
        }

        std::vector<Place> take() { return std::move(list_); }

    private:
        static std::string nameOf(const std::string& path)
        {
            return unicode::displayText(path::lastPathComponent(path));
        }

        std::vector<Place> list_;
    };

    void addStandardDirectories(PlaceList& list)
    {
        FileManager& files = FileManager::defaultManager();
        for (const SearchPathDirectory directory : kStandardDirectories) {
            for (const URL& url : files.urls(directory, SearchPathDomainMask::userDomainMask)) {
                if (files.fileExists(url.path()))
                    list.add(Kind::standardDirectory, url.path());
            }
        }
    }

    void addVolumes(PlaceList& list)
    {
        VolumeNames* const names = Installed<VolumeNames>::current();
        // A copy, since asking for names may read the table again.
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
    PlaceList list;
    list.add(Kind::home, FileManager::defaultManager().homeDirectoryForCurrentUser().path(), "Home");
    addStandardDirectories(list);
    list.add(Kind::fileSystem, "/", "File System");
    addVolumes(list);
    return list.take();
}

} // namespace quillbox
