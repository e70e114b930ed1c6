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

// One level of a directory as one read of it told: names and what kind each entry is. A listing of
// 100,000 names is two allocations. Indexes run from 0 in the order of the file system.
class DirectoryListing {
public:
    enum class EntryKind : std::uint8_t { unknown, file, directory, symbolicLink, other };

    DirectoryListing() = default;
    explicit DirectoryListing(std::string directoryPath);

    const std::string& directoryPath() const { return directoryPath_; }
    std::size_t count() const { return entries_.size(); }
    bool isEmpty() const { return entries_.empty(); }
    // The entry's name, byte for byte; good until the listing is changed or released.
    std::string_view name(std::size_t index) const;
    EntryKind kind(std::size_t index) const { return entries_[index].kind; }
    // The directory's path, a slash (none doubled at the root) and the name.
    std::string path(std::size_t index) const;

    // What the listing tells of the entry without another look: absent where a look could answer
    // differently (unknown kinds, possible alias files, every entry of a directory that can be listed but not
    // searched). What something is mounted on is of the same kind as what is mounted, so it needs no look, which the
    // mounted file system might not answer. Values beyond the six of a menu entry are never told.
    std::optional<URLResourceValues> knownResourceValues(std::size_t index) const;

    // What another look at the entry tells, for those of which the listing knows too little. Whether it is hidden the
    // listing knows of each: a ".hidden" file may name many thousands, and is read once for all.
    Result<URLResourceValues> resourceValues(std::size_t index, URLResourceKey keys) const;

    // What fills a listing calls these:
    void append(std::string_view name, EntryKind kind);
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
