#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace quillbox {

enum class BundleKind { application, preferencePane };

// A bundle that the keeper has made: where it is, and what its desktop entry said then.
struct InstalledBundle {
    BundleKind kind = BundleKind::application;
    std::string path;
    std::string desktopId;
    std::string entryPath;
    // The first word of Exec; empty if the entry has none.
    std::string program;
    std::string title;
};

// The keeper's own list of its bundles. It alone says whether a path is a bundle and which entry the bundle stands for;
// the files at the path are not trusted, since anybody can make a directory that looks like a bundle.
class InstalledBundles {
public:
    InstalledBundles() = default;
    explicit InstalledBundles(std::vector<InstalledBundle> bundles);

    const std::vector<InstalledBundle>& all() const { return bundles_; }
    // Returns the bundle to which `path` leads, through any links; null if it leads to none.
    const InstalledBundle* at(const std::string& path) const;

private:
    std::vector<InstalledBundle> bundles_;
    // Indexes by the last component of the path.
    std::unordered_multimap<std::string, std::size_t> byName_;
};

} // namespace quillbox
