#include "NSOpenPanel.h"

#include "CanonicalPath.h"
#include "Desktop.h"
#include "FileManager.h"
#include "LinkChain.h"
#include "NSApplication.h"
#include "URLResourceValues.h"
#include "UserDefaults.h"
#include "WindowDisplay.h"

namespace quillbox {

namespace {

    bool isDirectory(const std::string& path)
    {
        return FileManager::defaultManager().isDirectory(path);
    }

    bool isNamedAsPackage(const std::string& path)
    {
        return isPackageName(path::lastPathComponent(path));
    }

    // Returns what links and alias files at the end of the path lead to, or the path itself if nothing is there.
    std::string resolvingAliases(const std::string& path)
    {
        const auto end = endOfLinks(path);
        if (!end || end->path == path)
            return path;
        const Result<std::string> canonical = canonicalPath(end->path);
        return canonical ? *canonical : path;
    }

} // namespace

NSOpenPanel::NSOpenPanel() : NSWindow(std::make_shared<NSViewController>())
{
    contentViewController()->setView(std::make_shared<NSView>());
}

void NSOpenPanel::beginSheetModal(NSWindow& parent, std::function<void(NSModalResponse)> completion)
{
    urls_.clear();
    settings_ = OpenPanelSettings::read(UserDefaults::standard());
    attachTo(parent, std::move(completion));
    const auto self = std::static_pointer_cast<NSOpenPanel>(shared_from_this());
    NSApplication::shared().desktop().windows().beginOpenPanel(
        self, parent, [self, heldWindow = parent.weak_from_this()](NSModalResponse response) {
            self->settings_.store(UserDefaults::standard());
            // If that window was closed, it has ended its sheet already.
            if (const auto held = heldWindow.lock())
                held->endSheet(self, response);
        });
}

bool NSOpenPanel::canChoose(const std::string& path) const
{
    const std::string target = urlOfChoice(path).path();
    const bool isFile = !isDirectory(target) || isNamedAsPackage(target);
    return isFile ? canChooseFiles_ : canChooseDirectories_;
}

URL NSOpenPanel::urlOfChoice(const std::string& path) const
{
    return URL::fileURLWithPath(resolvesAliases_ ? resolvingAliases(path) : path);
}

std::optional<std::string> NSOpenPanel::directoryToEnter(const std::string& path) const
{
    if (isDirectory(path))
        return isNamedAsPackage(path) ? std::nullopt : std::optional(path);
    const std::string target = urlOfChoice(path).path();
    return target != path && isDirectory(target) ? directoryToEnter(target) : std::nullopt;
}

} // namespace quillbox
