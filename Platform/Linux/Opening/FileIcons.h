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

// Gives paths their pictures for LinuxWorkspace. A file's picture follows from its name's ending alone, so all files
// of one ending share a source and giving one is a look into a table; MIME types, themes and links are looked up by
// the sources when they are painted. A path whose kind is not known gets a source that looks then, too.
class FileIcons {
public:
    using EntryKind = DirectoryListing::EntryKind;
    using Source = std::shared_ptr<const ImageSource>;
    // The desktop entry that stands behind a package; none where there is none.
    using EntryOfPackage = std::function<std::optional<std::string>(const std::string& path)>;

    // `languages` as in XdgEnvironment: entries may name another picture in another language.
    FileIcons(EntryOfPackage entryOfPackage, std::vector<std::string> languages);

    Source source(std::string_view path, EntryKind kind);
    // To be called when desktop entries have changed. Pictures of other paths are kept.
    void dropPackages() { packages_.clear(); }

private:
    // What sources look things up with; they may outlive the table that made them.
    struct Lookup;

    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view> {}(text); }
    };
    using Table = std::unordered_map<std::string, Source, Hash, std::equal_to<>>;

    class PathSource;

    const Source* placeSource(std::string_view path) const;
    Source fileSource(std::string_view path);
    Source sourceOfEnding(std::string_view ending);
    Source directorySource(std::string_view path);
    Source packageSource(std::string_view path);

    std::shared_ptr<const Lookup> lookup_;
    // The keys are endings with their dot, and whole names of files that are known by them.
    Table files_;
    // The same for endings that fit into a number. Nearly all do, and asking here is quicker.
    std::unordered_map<std::uint64_t, Source> shortEndings_;
    // The keys are paths.
    Table packages_;
    // The home and the XDG user directories.
    std::vector<std::pair<std::string, Source>> places_;
    Source plainFile_;
    Source folder_;
};

} // namespace quillbox
