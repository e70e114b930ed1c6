#pragma once

#include "Data.h"
#include "Result.h"
#include "URLResourceValues.h"

#include <string>
#include <string_view>

namespace quillbox {

class FileReferenceURL;

// Functions on paths as plain bytes. Nothing here touches the disk or depends on the encoding.
namespace path {
    // "/a/b/" and "/a/b" give "b", "/" gives "/", "" gives "".
    std::string_view lastPathComponent(std::string_view path);
    // Returns what follows the last dot of the last component, without the dot. Empty if that dot begins or ends the
    // name, or if a space follows it.
    std::string_view pathExtension(std::string_view path);
    // Returns the path without that extension and its dot.
    std::string deletingPathExtension(std::string_view path);
    // Joins the two with one slash. If one of them is empty, the result is the other.
    std::string appending(std::string_view directory, std::string_view component);
    // Returns all but the last component: "/a/b" gives "/a", "/a" gives "/", "a" gives "".
    std::string_view deletingLastPathComponent(std::string_view path);
} // namespace path

// A file URL: an absolute path, as the file system's bytes, and whether it was written as a directory
// (with a trailing slash). Making one reads nothing from the disk.
class URL {
public:
    URL() = default;
    // A relative path is taken from the process's working directory; an empty one stays empty.
    static URL fileURLWithPath(std::string_view path);
    // Reads a "file:" URL with an empty host or "localhost", percent-decoded. Any other text gives an error.
    static Result<URL> fromString(std::string_view absoluteString);

    // The path without a trailing slash (the root is "/"), bytes unchanged.
    const std::string& path() const { return path_; }
    bool hasDirectoryPath() const { return hasDirectoryPath_; }
    // "file://" and the path, percent-encoded, with the trailing slash that the URL was made with.
    std::string absoluteString() const;
    std::string_view lastPathComponent() const { return path::lastPathComponent(path_); }
    std::string_view pathExtension() const { return path::pathExtension(path_); }
    URL appendingPathComponent(std::string_view component) const;
    // Returns the URL without ".", ".." and repeated slashes. Only the text is considered: the result is good for
    // reading, but behind links it may name another file than this one. To use the path, see canonicalPath().
    URL standardized() const;

    // Looks once at the entry itself; links are not followed. Fails if the entry can't be looked at.
    Result<URLResourceValues> resourceValues(URLResourceKey keys) const;

    // Returns the target of an alias file (see URLResourceValues::isAliasFile). Fails if `alias` is no alias file.
    static Result<URL> resolvingAliasFile(const URL& alias);

    // Makes a bookmark of the file. Bookmark.h has the rules, Bookmark.cpp the format.
    Result<Data> bookmarkData() const;
    // Returns the file of a bookmark. `isStale` is set, never cleared, if the bookmark should be made anew.
    static Result<URL> resolvingBookmarkData(const Data& bookmark, bool& isStale);

    // Returns a reference that follows the file when it is moved or renamed. Fails if nothing is at the path.
    Result<FileReferenceURL> fileReferenceURL() const;

    // The file permissions alone decide about access, so starting always succeeds and stopping does nothing.
    bool startAccessingSecurityScopedResource() const { return true; }
    void stopAccessingSecurityScopedResource() const { }

    friend bool operator==(const URL&, const URL&) = default;

private:
    std::string path_;
    bool hasDirectoryPath_ = false;
};

} // namespace quillbox
