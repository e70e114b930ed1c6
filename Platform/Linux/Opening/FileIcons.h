#pragma once

#include "DirectoryListing.h"
#include "NSImage.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillbox {

// Gives LinuxWorkspace the icons of paths. A file's icon follows from the ending of its name alone, so all files with
// the same ending share a source, and a request is only a look into a table. MIME types, themes and links are looked up
// by the sources when they are painted. A path of unknown kind gets a source that looks at the path then.
class FileIcons {
public:
    using EntryKind = DirectoryListing::EntryKind;
    using Source = std::shared_ptr<const ImageSource>;
    // Returns the desktop entry of a package, or nothing if it has none.
    using EntryOfPackage = std::function<std::optional<std::string>(const std::string& path)>;

    // `languages` is as in XdgEnvironment: an entry may name different icons in different languages.
    FileIcons(EntryOfPackage entryOfPackage, std::vector<std::string> languages);

    Source source(std::string_view path, EntryKind kind);
    // The icon of an application, by its desktop entry.
    Source sourceOfEntry(const std::string& entryPath) const;
    // Must be called when desktop entries have changed. Only the icons of packages are forgotten.
    void dropPackages() { packages_.clear(); }

private:
    // What sources need to look things up. It is shared, because sources may outlive the table that made them.
    struct Lookup;

    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view> {}(text); }
    };
    using Table = std::unordered_map<std::string, Source, Hash, std::equal_to<>>;

    class PathSource;
    class EntrySource;

    const Source* placeSource(std::string_view path) const;
    Source fileSource(std::string_view path);
    Source sourceOfEnding(std::string_view ending);
    Source directorySource(std::string_view path);
    Source packageSource(std::string_view path);

    std::shared_ptr<const Lookup> lookup_;
    // The keys are endings with their dot, and the whole names of some well-known files.
    Table files_;
    // The sources of endings that fit into a number. Nearly all do, and this table is faster.
    std::unordered_map<std::uint64_t, Source> shortEndings_;
    // The keys are paths.
    Table packages_;
    // The home directory and the XDG user directories.
    std::vector<std::pair<std::string, Source>> places_;
    Source plainFile_;
    Source folder_;
};

} // namespace quillbox
