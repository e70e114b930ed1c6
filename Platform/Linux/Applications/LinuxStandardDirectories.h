#pragma once

#include "ApplicationBundles.h"
#include "FileManager.h"

namespace quillbox {

// Knows the directories that have a role on the desktop: the XDG user directories as the user has set them (they are
// read again at every call; one that is set to the home directory counts as not set), the bundles that
// ApplicationBundles keeps, and printer descriptions. The program installs it once; `bundles` must outlive it.
class LinuxStandardDirectories final : public StandardDirectories {
public:
    explicit LinuxStandardDirectories(ApplicationBundles& bundles) : bundles_(bundles) { }

    // A call for applications or preference panes brings their bundles up to date first.
    std::vector<URL> urls(SearchPathDirectory directory, SearchPathDomainMask domains) override;
    URL homeDirectory() override;

private:
    std::vector<URL> bundleDirectories(BundleKind kind, SearchPathDomainMask domains);

    ApplicationBundles& bundles_;
};

} // namespace quillbox
