#pragma once

#include "Installed.h"
#include "NSWorkspace.h"

#include <string>
#include <vector>

namespace quillbox {

// A workspace that records what it was asked to open and gives every path an icon named after it. It is
// the installed workspace for as long as it lives.
class RecordingWorkspace final : public NSWorkspace {
public:
    NSImage icon(std::string_view forFile, EntryKind) override
    {
        ++iconsAsked;
        return image("icon of " + std::string(forFile.substr(forFile.rfind('/') + 1)));
    }
    std::optional<NSImage> systemImage(std::string_view name) override { return image(std::string(name)); }
    bool open(const URL& url) override
    {
        opened.push_back(url.path());
        return true;
    }
    bool launchApplication(const std::string& withBundleIdentifier) override
    {
        launched.push_back(withBundleIdentifier);
        return true;
    }

    Result<std::vector<Application>> applications(const URL&) override { return known; }
    bool open(const URL& url, const Application& withApplication) override
    {
        opened.push_back(url.path() + " with " + withApplication.identifier);
        return true;
    }
    bool activateFileViewer(const URL& selecting) override
    {
        shown.push_back(selecting.path());
        return true;
    }
    std::string fileBehind(const std::string& path) override { return path; }

    std::vector<Application> known;
    std::vector<std::string> opened;
    std::vector<std::string> shown;
    std::vector<std::string> launched;
    int iconsAsked = 0;

private:
    const Installed<NSWorkspace> installed_ { *this };

    static NSImage image(std::string name)
    {
        return NSImage(std::make_shared<KnownImageSource>(std::move(name), ThemedImage {}), { 32, 32 });
    }
};

} // namespace quillbox
