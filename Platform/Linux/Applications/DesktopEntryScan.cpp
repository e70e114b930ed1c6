#include "DesktopEntryScan.h"

#include "BundleState.h"
#include "DirectoryNames.h"
#include "PathStatus.h"
#include "Unicode.h"
#include "URL.h"

#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace quillbox {

namespace {

    constexpr std::string_view kExtension = ".desktop";
    constexpr int kDeepestFolder = 16;

    class Scan {
    public:
        Scan(const XdgEnvironment& environment, BundleState& state, UnreadSources& unread)
            : environment_(environment),
              state_(state),
              unread_(unread)
        {
        }

        void readDataDirectory(const std::string& dataDirectory)
        {
            visited_.clear();
            readFolder(dataDirectory + "/applications", "", domainOf(dataDirectory), 0);
        }

        std::vector<DesktopEntryFile> takeFiles()
        {
            std::vector<DesktopEntryFile> files;
            for (auto& [id, file] : files_) {
                if (!file.path.empty())
                    files.push_back(std::move(file));
            }
            return files;
        }

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
            const Result<struct stat> status = statusOfPath(folder);
            if (!status) {
                noteUnlessAbsent(status.error());
                return;
            }
            // Links may lead back to a directory above.
            if (!visited_.emplace(status->st_dev, status->st_ino).second)
                return;
            const Result<std::vector<std::string>> names = sortedNames(folder);
            if (!names) {
                noteUnlessAbsent(names.error());
                return;
            }
            std::vector<std::pair<std::string, std::string>> subfolders;
            for (const std::string& name : *names) {
                const std::string path = path::appending(folder, name);
                const Result<struct stat> entry = statusOfPath(path);
                const int error = entry ? 0 : entry.error().code;
                if (entry && S_ISDIR(entry->st_mode)) {
                    if (depth < kDeepestFolder)
                        subfolders.emplace_back(path, std::string(idPrefix).append(name).append("-"));
                } else if (name.ends_with(kExtension)) {
                    addFile(path, idPrefix + name, domain, error);
                } else if (error != 0) {
                    // It may be a directory.
                    noteUnlessAbsent(Error::fromErrno(error, "couldn't look at", path));
                }
            }
            // Subdirectories come after the files, so that "a-b.desktop" takes precedence over "a/b.desktop".
            for (const auto& [path, prefix] : subfolders)
                readFolder(path, prefix, domain, depth + 1);
        }

        // `error` is the error number of a failed look at the file, or 0.
        void addFile(const std::string& path, const std::string& id, BundleDomain domain, int error)
        {
            if (files_.contains(id) || !unicode::isValidUTF8(id))
                return;
            state_.watch(path);
            if (error == 0) {
                files_.emplace(id, DesktopEntryFile { path, id, domain });
            } else if (!isAbsence(error)) {
                files_.emplace(id, DesktopEntryFile { {}, id, domain });
                noteUnlessAbsent(Error::fromErrno(error, "couldn't look at", path));
            }
        }

        void noteUnlessAbsent(const Error& error)
        {
            if (isAbsence(error.code))
                return;
            unread_.add(error);
            state_.watchUnread(error.path);
        }

        const XdgEnvironment& environment_;
        BundleState& state_;
        UnreadSources& unread_;
        // The key is the desktop id. The path is empty if the entry that counts can't be looked at.
        std::map<std::string, DesktopEntryFile> files_;
        std::set<std::pair<dev_t, ino_t>> visited_;
    };

} // namespace

std::vector<DesktopEntryFile> scanDesktopEntries(const XdgEnvironment& environment, BundleState& state,
                                                 UnreadSources& unread)
{
    Scan scan(environment, state, unread);
    scan.readDataDirectory(environment.dataHome);
    for (const std::string& directory : environment.dataDirectories) {
        if (directory != environment.dataHome)
            scan.readDataDirectory(directory);
    }
    return scan.takeFiles();
}

} // namespace quillbox
