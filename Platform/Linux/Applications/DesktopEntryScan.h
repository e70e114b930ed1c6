#pragma once

#include "UnreadSources.h"
#include "XdgEnvironment.h"

#include <string>
#include <vector>

namespace quillbox {

class BundleState;

// For whom a desktop entry was installed.
enum class BundleDomain { local, system, user };

// The file of one entry, as the directories show it; it has not been read.
struct DesktopEntryFile {
    std::string path;
    // The id has the extension: that of "kde/foo.desktop" in an applications directory is "kde-foo.desktop".
    std::string desktopId;
    BundleDomain domain;
};

// Returns the entry files that count, in the order of their ids: of several with the same id, the one in the most
// important directory. Directories, and each file that counts, are added to `state` before they are read, so that a
// later look can tell whether they have changed. Ids that are not valid UTF-8, dangling links and directories named
// like entries are left out. What can't be looked at is added to `unread`; an unread entry still hides less important
// ones with the same id.
std::vector<DesktopEntryFile> scanDesktopEntries(const XdgEnvironment& environment, BundleState& state,
                                                 UnreadSources& unread);

} // namespace quillbox
