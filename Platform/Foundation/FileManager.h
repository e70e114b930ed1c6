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

// Knows where the running system keeps the directories that have a role. The desktop's side implements it.
class StandardDirectories {
public:
    virtual ~StandardDirectories() = default;
    // Returns the directories in the order local, system, user. A domain that has no such directory adds none.
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

    // Returns what the path leads to; links are followed. If that can't be told, the error says whether nothing is
    // there (Error::isNotThere) or the look itself failed.
    virtual Result<FileKind> kind(const std::string& path);
    // A path that can't be reached counts as one where nothing is.
    bool fileExists(const std::string& path) { return kind(path).hasValue(); }
    bool isDirectory(const std::string& path);

    // Lists one level of the directory. With skipsHiddenFiles, dot files and the names in the directory's .hidden file
    // are left out. "." and ".." never appear.
    virtual Result<DirectoryListing> contentsOfDirectory(const URL& directory, DirectoryEnumerationOptions options);

    // Returns the link's text as it is stored.
    virtual Result<std::string> destinationOfSymbolicLink(const std::string& path);

    // Returns what the installed standard directories say; empty if none are installed.
    std::vector<URL> urls(SearchPathDirectory directory, SearchPathDomainMask domains);
    // Returns what the installed standard directories say. If none are installed, it is $HOME, otherwise the directory
    // in the password database.
    URL homeDirectoryForCurrentUser();

    // Returns the file manager that is installed, otherwise a plain one.
    static FileManager& defaultManager();
};

} // namespace quillbox
