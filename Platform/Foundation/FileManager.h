#pragma once

#include "DirectoryListing.h"
#include "Result.h"
#include "URL.h"

#include <memory>
#include <string>
#include <vector>

namespace quillbox {

enum class SearchPathDirectory : unsigned {
    applicationDirectory = 1,
    documentDirectory = 9,
    desktopDirectory = 12,
    downloadsDirectory = 15,
    moviesDirectory = 17,
    musicDirectory = 18,
    picturesDirectory = 19,
    printerDescriptionDirectory = 20,
    preferencePanesDirectory = 22,
};

enum class SearchPathDomainMask : unsigned {
    userDomainMask = 1,
    localDomainMask = 2,
    systemDomainMask = 8,
    localAndSystemDomainMask = 10,
};

// Where the running system keeps the directories that have a role. Implemented by the desktop's side.
class StandardDirectories {
public:
    virtual ~StandardDirectories() = default;
    // The order is local, system, user. A domain that has no such directory gives no entry.
    virtual std::vector<URL> urls(SearchPathDirectory directory, SearchPathDomainMask domains) = 0;
    virtual URL homeDirectory() = 0;
};

enum class DirectoryEnumerationOptions { none, skipsHiddenFiles };

// What a path leads to: a directory, or anything else.
enum class FileKind { file, directory };

// Looks at the file system. Nothing is cached: every call asks anew. Tests derive from it to fix the order
// of a listing.
class FileManager {
public:
    virtual ~FileManager() = default;

    // Follows links. Where there is none, the error says whether nothing is there (Error::isNotThere) or it could not
    // be told.
    virtual Result<FileKind> kind(const std::string& path);
    // A path that can't be reached does not exist.
    bool fileExists(const std::string& path) { return kind(path).hasValue(); }
    bool isDirectory(const std::string& path);

    // One level. With skipsHiddenFiles, dot files and names in the directory's .hidden file are left out.
    // "." and ".." never appear.
    virtual Result<DirectoryListing> contentsOfDirectory(const URL& directory, DirectoryEnumerationOptions options);

    // The link's text as stored.
    virtual Result<std::string> destinationOfSymbolicLink(const std::string& path);

    // What the Installed standard directories say; empty where there are none.
    std::vector<URL> urls(SearchPathDirectory directory, SearchPathDomainMask domains);
    // What the Installed standard directories say; without any, $HOME, else the password database.
    URL homeDirectoryForCurrentUser();

    // The one that is Installed, else a plain one.
    static FileManager& defaultManager();
};

} // namespace quillbox
