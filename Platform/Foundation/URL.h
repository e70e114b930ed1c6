#pragma once

#include "Data.h"
#include "Result.h"
#include "URLResourceValues.h"

#include <string>
#include <string_view>

namespace quillbox {

class FileReferenceURL;

// Path texts, byte for byte; nothing here touches the disk or minds the encoding.
namespace path {
    // "/a/b/" and "/a/b" give "b", "/" gives "/", "" gives "".
    std::string_view lastPathComponent(std::string_view path);
    // What follows the last dot of the last component, without the dot; empty where the only dot leads
    // the name, ends it, or what follows it has a space.
    std::string_view pathExtension(std::string_view path);
    // The path without that extension and its dot.
    std::string deletingPathExtension(std::string_view path);
    // One slash between the two.
    std::string appending(std::string_view directory, std::string_view component);
    // All but the last component: "/a/b" gives "/a", "/a" gives "/", "a" gives "".
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
    // The URL without ".", ".." and repeated slashes, by the text alone: good to be read, but behind links it means
    // another file than this one. Where the path is used, see canonicalPath().
    URL standardized() const;

    // One look at the entry itself (links are not followed). Fails where the entry can't be looked at.
    Result<URLResourceValues> resourceValues(URLResourceKey keys) const;

    // The target of an alias file (see URLResourceValues::isAliasFile). Fails where this is none.
    static Result<URL> resolvingAliasFile(const URL& alias);

    // Bookmarks: Bookmark.h has the format and the rules.
    Result<Data> bookmarkData() const;
    // `isStale` is set, never cleared, where the bytes should be made afresh.
    static Result<URL> resolvingBookmarkData(const Data& bookmark, bool& isStale);

    // A reference that follows the file when it is moved or renamed; an error where nothing is there.
    Result<FileReferenceURL> fileReferenceURL() const;

    // Access is what the file permissions say; starting grants it and stopping is empty.
    bool startAccessingSecurityScopedResource() const { return true; }
    void stopAccessingSecurityScopedResource() const { }

    friend bool operator==(const URL&, const URL&) = default;

private:
    std::string path_;
    bool hasDirectoryPath_ = false;
};

} // namespace quillbox
