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
};

// The directories of bundles on disk, one for each domain and kind, called by the keeper of application bundles. It
// changes what differs from the plan and touches nothing else: a bundle whose title has changed is renamed, so whoever
// holds on to it by its identity still has it. A bundle is made under another name and then renamed, and has another
// name before it is taken apart, so none is ever seen half made. What it finds in the directories and did not make
// stays as it is.
class BundleStore {
public:
    // What became of a plan.
    struct Outcome {
        // Those that are on disk now and stand for an entry.
        std::vector<InstalledBundle> bundles;
        // What kept bundles from being as planned.
        std::vector<Error> unwritten;
        // What could not be cleared away, out of everybody's sight.
        std::vector<Error> leftovers;
        // Why the store itself couldn't be read. Nothing was changed then, and the bundles are not known.
        std::optional<Error> unread;
    };

    // `root` need not exist yet.
    explicit BundleStore(std::string root) : root_(std::move(root)) { }

    const std::string& root() const { return root_; }
    std::string directory(BundleDomain domain, BundleKind kind) const;
    // All six.
    std::vector<std::string> directories() const;

    // Goes on after a failure. Bundles whose entries may be among `unread` stay as they are.
    Outcome bringTo(const std::vector<PlannedBundle>& plan, const UnreadSources& unread) const;
    // Tries whether a small file can be written into each of the directories.
    bool canBeWritten() const;

private:
    std::string root_;
};

} // namespace quillbox
