#include "FileIcons.h"

#include "CanonicalPath.h"
#include "DesktopEntry.h"
#include "GLibPointer.h"
#include "PathStatus.h"
#include "URL.h"
#include "URLResourceValues.h"

#include <gio/gio.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace quillbox {

namespace {

    // Longer endings are parts of a name rather than types, as in "Minutes of 3. September".
    constexpr std::size_t kLongestEnding = 16;
    // Directories may contain thousands of made-up endings. The tables are emptied when they have more entries than
    // this.
    constexpr std::size_t kMostSources = 4096;

    // Some endings of two parts, like "tar.gz", are types of their own. These are the first parts of such endings.
    constexpr std::array<std::string_view, 15> kFirstParts { "tar", "ps",  "pdf", "svg", "eps",  "epsi", "epsf", "dvi",
                                                             "xcf", "pcf", "psf", "src", "cpio", "fb2",  "img" };

    // Files without an ending whose whole name tells their type.
    constexpr std::array<std::string_view, 14> kWellKnownNames { "Makefile",   "makefile", "GNUmakefile", "README",
                                                                 "COPYING",    "LICENSE",  "AUTHORS",     "CREDITS",
                                                                 "INSTALL",    "NEWS",     "ChangeLog",   "TODO",
                                                                 "SConstruct", "core" };

    bool isFirstPart(std::string_view part)
    {
        return std::find(kFirstParts.begin(), kFirstParts.end(), part) != kFirstParts.end();
    }

    // Returns the ending that decides a file's type, with its dot; empty if there is none. It is called for every row
    // of a listing, so it looks only at the end of the path.
    std::string_view ending(std::string_view path)
    {
        const std::size_t stop = path.size() - std::min(path.size(), kLongestEnding);
        std::size_t dot = path.size();
        do {
            if (dot == stop || path[--dot] == '/')
                return {};
        } while (path[dot] != '.');
        // If the only dot begins the name, it begins no ending.
        if (dot == 0 || path[dot - 1] == '/')
            return {};
        // The first part of a double ending has 2 to 4 letters and comes after a name.
        for (std::size_t length = 2; length <= 4 && length + 2 <= dot; ++length) {
            const std::size_t before = dot - length - 1;
            if (path[before] == '.' && path[before - 1] != '/' && isFirstPart(path.substr(before + 1, length)))
                return path.substr(before);
        }
        return path.substr(dot);
    }

    // Returns the theme's icon names for a content type, best first.
    std::vector<std::string> iconNames(const char* contentType)
    {
        std::vector<std::string> names;
        const GLibObject<GIcon> icon(g_content_type_get_icon(contentType));
        if (G_IS_THEMED_ICON(icon.get())) {
            for (const char* const* name = g_themed_icon_get_names(G_THEMED_ICON(icon.get())); name && *name; ++name) {
                // Symbolic icons have a single colour and are made for toolbars.
                if (!std::string_view(*name).ends_with("-symbolic"))
                    names.emplace_back(*name);
            }
        }
        return names;
    }

    ThemedImage imageOfFileNamed(const std::string& name)
    {
        const GLibText type(g_content_type_guess(name.c_str(), nullptr, 0, nullptr));
        ThemedImage image { iconNames(type.get()), {} };
        // Themes need not have an icon for every type, so this one comes last.
        image.names.emplace_back("text-x-generic");
        return image;
    }

    ThemedImage imageOfType(const char* contentType)
    {
        return { iconNames(contentType), {} };
    }

    const ThemedImage kFolderImage { { "folder", "inode-directory" }, {} };
    const ThemedImage kPackageImage { { "package-x-generic", "folder" }, {} };
    const ThemedImage kApplicationImage { { "application-x-executable", "package-x-generic" }, {} };

    // A file that does not answer now may still be painted the next time.
    bool mayBeThere(const std::string& path)
    {
        const Result<struct stat> status = statusOfPath(path);
        return status || status.error().code == ETIMEDOUT;
    }

    ImageContent imageOfEntry(const std::string& entryPath, const std::vector<std::string>& languages)
    {
        const Result<std::optional<DesktopEntry>> read = DesktopEntry::read(entryPath, languages);
        const std::optional<DesktopEntry> entry = read ? *read : std::nullopt;
        if (!entry || entry->icon.empty())
            return kApplicationImage;
        if (entry->icon.front() == '/')
            return mayBeThere(entry->icon) ? ImageContent(ImageFile { entry->icon }) : kApplicationImage;
        std::string name = entry->icon;
        // Some entries give the name of a theme's icon with the ending of a file.
        for (const std::string_view fileEnding : { ".png", ".svg", ".xpm" }) {
            if (name.ends_with(fileEnding))
                name.resize(name.size() - fileEnding.size());
        }
        ThemedImage image { { name }, {} };
        image.names.insert(image.names.end(), kApplicationImage.names.begin(), kApplicationImage.names.end());
        return image;
    }

    // The icon of all files with the same ending.
    class EndingSource final : public ImageSource {
    public:
        // `example` is a file name with that ending.
        explicit EndingSource(std::string example) : example_(std::move(example)) { }
        ImageContent content() const override { return imageOfFileNamed(example_); }
        std::string name() const override
        {
            return "icon of " + (example_.starts_with("file.") ? '*' + example_.substr(4) : example_);
        }

    private:
        std::string example_;
    };

    FileIcons::Source known(const char* name, ImageContent content)
    {
        return std::make_shared<KnownImageSource>(name, std::move(content));
    }

} // namespace

struct FileIcons::Lookup {
    EntryOfPackage entryOfPackage;
    std::vector<std::string> languages;

    ImageContent imageOf(const std::string& path) const;
    ImageContent imageOfPackage(const std::string& package) const;
};

// The icon of one path, which is looked at when the icon is painted.
class FileIcons::PathSource final : public ImageSource {
public:
    PathSource(std::string_view path, std::shared_ptr<const Lookup> lookup)
        : path_(path),
          lookup_(std::move(lookup)) { }
    ImageContent content() const override { return lookup_->imageOf(path_); }
    std::string name() const override { return "icon of " + path_; }

private:
    std::string path_;
    std::shared_ptr<const Lookup> lookup_;
};

// The icon that a desktop entry names, which is read when it is painted.
class FileIcons::EntrySource final : public ImageSource {
public:
    EntrySource(std::string entryPath, std::shared_ptr<const Lookup> lookup)
        : entryPath_(std::move(entryPath)),
          lookup_(std::move(lookup))
    {
    }
    ImageContent content() const override { return imageOfEntry(entryPath_, lookup_->languages); }
    std::string name() const override { return "icon of " + entryPath_; }

private:
    std::string entryPath_;
    std::shared_ptr<const Lookup> lookup_;
};

FileIcons::FileIcons(EntryOfPackage entryOfPackage, std::vector<std::string> languages)
    : lookup_(std::make_shared<Lookup>(Lookup { std::move(entryOfPackage), std::move(languages) })),
      plainFile_(known("icon of a file", imageOfFileNamed("file"))),
      folder_(known("icon of a folder", kFolderImage))
{
    const auto addPlace = [&](const char* path, const char* iconName) {
        if (path)
            places_.emplace_back(path, known(iconName, ThemedImage { { iconName, "folder" }, {} }));
    };
    addPlace(g_get_home_dir(), "user-home");
    addPlace(g_get_user_special_dir(G_USER_DIRECTORY_DESKTOP), "user-desktop");
    addPlace(g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS), "folder-documents");
    addPlace(g_get_user_special_dir(G_USER_DIRECTORY_DOWNLOAD), "folder-download");
    addPlace(g_get_user_special_dir(G_USER_DIRECTORY_MUSIC), "folder-music");
    addPlace(g_get_user_special_dir(G_USER_DIRECTORY_PICTURES), "folder-pictures");
    addPlace(g_get_user_special_dir(G_USER_DIRECTORY_VIDEOS), "folder-videos");
    addPlace(g_get_user_special_dir(G_USER_DIRECTORY_PUBLIC_SHARE), "folder-publicshare");
    addPlace(g_get_user_special_dir(G_USER_DIRECTORY_TEMPLATES), "folder-templates");
}

FileIcons::Source FileIcons::source(std::string_view path, EntryKind kind)
{
    switch (kind) {
    case EntryKind::file:
        return fileSource(path);
    case EntryKind::directory:
        return directorySource(path);
    case EntryKind::unknown:
        // In these cases the path alone most likely decides, so rows share a source, which looks at the path when it is
        // painted.
        if (isPackageName(path::lastPathComponent(path)))
            return packageSource(path);
        if (const Source* place = placeSource(path))
            return *place;
        break;
    case EntryKind::symbolicLink:
    case EntryKind::other:
        break;
    }
    return std::make_shared<PathSource>(path, lookup_);
}

FileIcons::Source FileIcons::sourceOfEntry(const std::string& entryPath) const
{
    return std::make_shared<EntrySource>(entryPath, lookup_);
}

FileIcons::Source FileIcons::fileSource(std::string_view path)
{
    if (const std::string_view end = ending(path); !end.empty())
        return sourceOfEnding(end);
    const std::string_view name = path::lastPathComponent(path);
    if (const auto found = files_.find(name); found != files_.end())
        return found->second;
    if (std::find(kWellKnownNames.begin(), kWellKnownNames.end(), name) == kWellKnownNames.end())
        return plainFile_;
    std::string key(name);
    auto source = std::make_shared<EndingSource>(key);
    return files_.emplace(std::move(key), std::move(source)).first->second;
}

FileIcons::Source FileIcons::sourceOfEnding(std::string_view ending)
{
    std::uint64_t number = 0;
    const bool isShort = ending.size() <= sizeof number;
    if (isShort) {
        std::memcpy(&number, ending.data(), ending.size());
        if (const auto found = shortEndings_.find(number); found != shortEndings_.end())
            return found->second;
    } else if (const auto found = files_.find(ending); found != files_.end()) {
        return found->second;
    }
    if (files_.size() + shortEndings_.size() >= kMostSources) {
        files_.clear();
        shortEndings_.clear();
    }
    std::string key(ending);
    auto source = std::make_shared<EndingSource>("file" + key);
    return isShort ? shortEndings_.emplace(number, std::move(source)).first->second
                   : files_.emplace(std::move(key), std::move(source)).first->second;
}

FileIcons::Source FileIcons::directorySource(std::string_view path)
{
    if (isPackageName(path::lastPathComponent(path)))
        return packageSource(path);
    const Source* place = placeSource(path);
    return place ? *place : folder_;
}

const FileIcons::Source* FileIcons::placeSource(std::string_view path) const
{
    const auto place =
        std::find_if(places_.begin(), places_.end(), [&](const auto& candidate) { return candidate.first == path; });
    return place == places_.end() ? nullptr : &place->second;
}

FileIcons::Source FileIcons::packageSource(std::string_view path)
{
    if (const auto found = packages_.find(path); found != packages_.end())
        return found->second;
    if (packages_.size() >= kMostSources)
        packages_.clear();
    auto source = std::make_shared<PathSource>(path, lookup_);
    return packages_.emplace(std::string(path), std::move(source)).first->second;
}

ImageContent FileIcons::Lookup::imageOfPackage(const std::string& package) const
{
    if (const auto entry = entryOfPackage(package))
        return imageOfEntry(*entry, languages);
    const std::string ownPicture = package + "/.DirIcon";
    if (package.ends_with(".AppDir")) {
        if (const Result<struct stat> status = statusOfPath(ownPicture); status && S_ISREG(status->st_mode))
            return ImageFile { ownPicture };
    }
    return package.ends_with(".app") || package.ends_with(".AppDir") ? kApplicationImage : kPackageImage;
}

ImageContent FileIcons::Lookup::imageOf(const std::string& path) const
{
    const Result<struct stat> entry = statusOfPath(path, LastLink::notFollowed);
    const bool isLink = entry && S_ISLNK(entry->st_mode);
    const Result<struct stat> status = isLink ? statusOfPath(path) : entry;
    if (!status)
        return isLink ? imageOfType("inode/symlink") : imageOfFileNamed("file");
    switch (status->st_mode & S_IFMT) {
    case S_IFDIR:
    case S_IFREG:
        break;
    case S_IFIFO:
        return imageOfType("inode/fifo");
    case S_IFSOCK:
        return imageOfType("inode/socket");
    case S_IFCHR:
        return imageOfType("inode/chardevice");
    default:
        return imageOfType("inode/blockdevice");
    }
    // The name of a link says nothing about what it leads to.
    const Result<std::string> target = isLink ? canonicalPath(path) : path;
    const std::string end = target ? *target : path;
    const std::string name(path::lastPathComponent(end));
    if (S_ISREG(status->st_mode))
        return imageOfFileNamed(name);
    return isPackageName(name) ? imageOfPackage(end) : ImageContent(kFolderImage);
}

} // namespace quillbox
