#pragma once

#include "DesktopEntryScan.h"
#include "InstalledBundles.h"
#include "Result.h"

#include <optional>
#include <string>
#include <vector>

namespace quillbox {

// A bundle as it should be on disk.
struct PlannedBundle {
    BundleDomain domain = BundleDomain::system;
    BundleKind kind = BundleKind::application;
    // The file name is made from the title.
    std::string title;
    std::string desktopId;
    // The desktop entry that the bundle stands for.
    std::string entryPath;
    // The first word of the entry's Exec.
    std::string program;
    // The bytes of its Info.plist.
    std::string info;
    // Whether it gets the plain name if another bundle in its directory has the same title.
    bool isFirstOfItsName = false;
};

// The directories of bundles on disk, one for each domain and kind. The keeper of application bundles calls it. It
// changes what differs from the plan and touches nothing else: a bundle whose title has changed is renamed, so that it
// keeps its identity. A bundle is made under a hidden name and then renamed, and gets a hidden name again before it is
// removed, so that nobody sees an incomplete one. Files in the directories that it did not make are left alone.
class BundleStore {
public:
    // The result of carrying out a plan.
    struct Outcome {
        // The bundles that are on disk now and stand for an entry.
        std::vector<InstalledBundle> bundles;
        // Why bundles are not as planned.
        std::vector<Error> unwritten;
        // What could not be removed; it has a hidden name.
        std::vector<Error> leftovers;
        // Why the store itself couldn't be read. If this is set, nothing was changed and the bundles are not known.
        std::optional<Error> unread;
    };

    // `root` need not exist yet.
    explicit BundleStore(std::string root) : root_(std::move(root)) { }

    const std::string& root() const { return root_; }
    std::string directory(BundleDomain domain, BundleKind kind) const;
    // All six directories.
    std::vector<std::string> directories() const;

    // Makes the bundles on disk equal to the plan, and continues after a failure. Bundles whose entries may be among
    // `unread` stay as they are.
    Outcome bringTo(const std::vector<PlannedBundle>& plan, const UnreadSources& unread) const;
    // Checks whether a small file can be written into each of the directories.
    bool canBeWritten() const;

private:
    std::string root_;
};

} // namespace quillbox
