#pragma once

#include "UnreadSources.h"
#include "XdgEnvironment.h"

#include <string>
#include <vector>

namespace quillbox {

class BundleState;

// Whom a desktop entry was installed for.
enum class BundleDomain { local, system, user };

// One entry's file as the data directories tell it, unread.
struct DesktopEntryFile {
    std::string path;
    // With its extension: "kde/foo.desktop" in an applications directory is "kde-foo.desktop".
    std::string desktopId;
    BundleDomain domain;
};

// The entry files that count, in the order of their ids: of several with the same id the one in the most important
// directory. Directories and each file that counts are added to `state` before they are read, so that a later look
// tells whether they have changed. Ids that are not valid UTF-8, dangling links and directories named like entries are
// left out. What can't be looked at is added to `unread`; an entry among it still hides less important ones of its id.
std::vector<DesktopEntryFile> scanDesktopEntries(const XdgEnvironment& environment, BundleState& state,
                                                 UnreadSources& unread);

} // namespace quillbox
