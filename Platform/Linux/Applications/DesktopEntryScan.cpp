#include "DesktopEntryScan.h"

#include "BundleState.h"
#include "Unicode.h"
#include "URL.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace quillbox {

namespace {

    constexpr std::string_view kExtension = ".desktop";
    constexpr int kDeepestFolder = 16;

    std::vector<std::string> sortedNames(const std::string& directory)
    {
        std::vector<std::string> names;
        DIR* stream = opendir(directory.c_str());
        if (!stream)
            return names;
        while (const dirent* entry = readdir(stream)) {
            const std::string_view name = entry->d_name;
            if (name != "." && name != "..")
                names.emplace_back(name);
        }
        closedir(stream);
        std::sort(names.begin(), names.end());
        return names;
    }

    class Scan {
    public:
        Scan(const XdgEnvironment& environment, BundleState& state) : environment_(environment), state_(state) { }

        void readDataDirectory(const std::string& dataDirectory)
        {
            visited_.clear();
            readFolder(dataDirectory + "/applications", "", domainOf(dataDirectory), 0);
        }

        std::map<std::string, DesktopEntryFile> takeFiles() { return std::move(files_); }

    private:
        BundleDomain domainOf(const std::string& dataDirectory) const
        {
            if (dataDirectory == environment_.dataHome || dataDirectory.starts_with(environment_.dataHome + "/"))
                return BundleDomain::user;
            return dataDirectory == environment_.systemDataDirectory ? BundleDomain::system : BundleDomain::local;
        }

        void readFolder(const std::string& folder, const std::string& idPrefix, BundleDomain domain, int depth)
        {
            state_.watch(folder);
            struct stat status { };
            // Links may lead back up.
            if (stat(folder.c_str(), &status) != 0 || !visited_.emplace(status.st_dev, status.st_ino).second)
                return;
            std::vector<std::pair<std::string, std::string>> subfolders;
            for (const std::string& name : sortedNames(folder)) {
                const std::string path = path::appending(folder, name);
                const bool isEntryName = name.ends_with(kExtension);
                const bool isThere = stat(path.c_str(), &status) == 0;
                if (isThere && S_ISDIR(status.st_mode)) {
                    if (depth < kDeepestFolder)
                        subfolders.emplace_back(path, std::string(idPrefix).append(name).append("-"));
                } else if (isEntryName) {
                    addFile(path, idPrefix + name, domain, isThere);
                }
            }
            // After the files, so that of "a-b.desktop" and "a/b.desktop" the former counts.
            for (const auto& [path, prefix] : subfolders)
                readFolder(path, prefix, domain, depth + 1);
        }

        void addFile(const std::string& path, const std::string& id, BundleDomain domain, bool isThere)
        {
            if (files_.contains(id) || !unicode::isValidUTF8(id))
                return;
            state_.watch(path);
            if (isThere)
                files_.emplace(id, DesktopEntryFile { path, id, domain });
        }

        const XdgEnvironment& environment_;
        BundleState& state_;
        std::map<std::string, DesktopEntryFile> files_;
        std::set<std::pair<dev_t, ino_t>> visited_;
    };

} // namespace

std::vector<DesktopEntryFile> scanDesktopEntries(const XdgEnvironment& environment, BundleState& state)
{
    Scan scan(environment, state);
    scan.readDataDirectory(environment.dataHome);
    for (const std::string& directory : environment.dataDirectories) {
        if (directory != environment.dataHome)
            scan.readDataDirectory(directory);
    }
    std::vector<DesktopEntryFile> files;
    for (auto& [id, file] : scan.takeFiles())
        files.push_back(std::move(file));
    return files;
}

} // namespace quillbox
