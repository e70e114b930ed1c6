#pragma once

#include "ApplicationBundles.h"
#include "FileManager.h"

namespace quillbox {

// Answers where the desktop keeps the directories that have a role: the XDG user directories as the user has set them
// (read again at every question; one set to the home directory itself is set to nothing), the bundles that
// ApplicationBundles keeps, and printer descriptions. Installed once by the program; `bundles` must outlive it.
class LinuxStandardDirectories final : public StandardDirectories {
public:
    explicit LinuxStandardDirectories(ApplicationBundles& bundles) : bundles_(bundles) { }

    // Asking for applications or preference panes brings their bundles up to date first.
    std::vector<URL> urls(SearchPathDirectory directory, SearchPathDomainMask domains) override;
    URL homeDirectory() override;

private:
    std::vector<URL> bundleDirectories(BundleKind kind, SearchPathDomainMask domains);

    ApplicationBundles& bundles_;
};

} // namespace quillbox
