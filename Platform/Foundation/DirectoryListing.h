#pragma once

#include "Result.h"
#include "URLResourceValues.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace quillbox {

// One level of a directory, as a single read of it showed it: the entries' names and kinds. All names share one buffer,
// so that a listing of 100,000 entries stays cheap. Indexes run from 0, in the order in which the file system gave the
// entries.
class DirectoryListing {
public:
    enum class EntryKind : std::uint8_t { unknown, file, directory, symbolicLink, other };

    DirectoryListing() = default;
    explicit DirectoryListing(std::string directoryPath);

    const std::string& directoryPath() const { return directoryPath_; }
    std::size_t count() const { return entries_.size(); }
    bool isEmpty() const { return entries_.empty(); }
    // Returns the entry's name, byte for byte. It is valid until the listing is changed or destroyed.
    std::string_view name(std::size_t index) const;
    EntryKind kind(std::size_t index) const { return entries_[index].kind; }
    // Returns the directory's path, a slash (not doubled at the root) and the name.
    std::string path(std::size_t index) const;
    // The same in a text that is used for one entry after another.
    void getPath(std::size_t index, std::string& path) const;

    // Returns the resource values of the entry that follow from the listing alone. Nothing is returned if a look at the
    // entry could give another answer: for an unknown kind, for a possible alias file, and for every entry of a
    // directory that can be listed but not searched. A mount point and what is mounted on it are of the same kind, so
    // it needs no look, which the mounted file system might not answer. Only the six values that a menu entry needs are
    // given.
    std::optional<URLResourceValues> knownResourceValues(std::size_t index) const;

    // Looks at the entry, for values of which the listing knows too little. Whether it is hidden still comes from the
    // listing: a ".hidden" file may name many thousands, and is read only once for all entries.
    Result<URLResourceValues> resourceValues(std::size_t index, URLResourceKey keys) const;

    // The functions below fill a listing, or pass it on to another process.
    void append(std::string_view name, EntryKind kind);
    // Gives back the room that was kept for more entries. A listing may live as long as a menu is open.
    void shrinkToFit();
    void setNamesToldHidden(std::unordered_set<std::string> names) { hiddenNames_ = std::move(names); }
    void setIsSearchable(bool isSearchable) { isSearchable_ = isSearchable; }
    bool isSearchable() const { return isSearchable_; }
    const std::unordered_set<std::string>& namesToldHidden() const { return hiddenNames_; }
    bool isHidden(std::string_view name) const;

private:
    struct Entry {
        std::uint32_t offset;
        std::uint16_t length;
        EntryKind kind;
    };

    std::string directoryPath_;
    std::string names_;
    std::vector<Entry> entries_;
    // The names that the directory's .hidden file lists.
    std::unordered_set<std::string> hiddenNames_;
    bool isSearchable_ = true;
};

} // namespace quillbox
