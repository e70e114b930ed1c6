#pragma once

#include "DesktopEntryScan.h"
#include "Result.h"

#include <optional>
#include <string>
#include <vector>

namespace quillbox {

enum class BundleKind { application, preferencePane };

// A bundle as it should be on disk.
struct PlannedBundle {
    BundleDomain domain = BundleDomain::system;
    BundleKind kind = BundleKind::application;
    // What the file name is made from.
    std::string title;
    std::string desktopId;
    // The desktop entry that it stands for.
    std::string entryPath;
    // The first word of the entry's Exec.
    std::string program;
    // The bytes of its Info.plist.
    std::string info;
    // Gets the plain name where another bundle of its directory has the same title.
    bool isFirstOfItsName = false;
    // Where it is; the store sets it.
    std::string path;
};

// The directories of bundles on disk, one for each domain and kind, called by the keeper of application bundles. It
// changes what differs from the plan and touches nothing else: a bundle whose title has changed is renamed, so whoever
// holds on to it by its identity still has it. A bundle is made under another name and then renamed, so none is ever
// seen half made. What it finds in the directories and did not make stays as it is.
class BundleStore {
public:
    // `root` need not exist yet.
    explicit BundleStore(std::string root) : root_(std::move(root)) { }

    std::string directory(BundleDomain domain, BundleKind kind) const;
    // All six.
    std::vector<std::string> directories() const;

    // Goes on after a failure and gives all of them.
    std::vector<Error> bringTo(std::vector<PlannedBundle>& plan);

    // The desktop entry that the bundle at `path` stands for; none where that is no bundle of this store.
    std::optional<std::string> entryOfBundle(const std::string& path) const;

private:
    std::string root_;
};

} // namespace quillbox
