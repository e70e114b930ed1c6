#include "LinuxWorkspace.h"

#include "ApplicationBundles.h"
#include "Bundle.h"
#include "Unicode.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace quillbox {

namespace {

    constexpr std::string_view kSettingsIdentifier = "com.apple.systempreferences";

    // An icon of a file until it is given another size: what most themes draw best.
    constexpr NSSize kFileIconSize { 32, 32 };

    struct SystemImage {
        std::string_view name;
        // In the icon theme, best first.
        std::vector<std::string> themeNames;
        double size;
        // Themes have no picture, or several that mean something else: ours is shown.
        bool prefersOwn;
    };

    const SystemImage kSystemImages[] = {
        { NSImageNameStatusUnavailable, { "user-busy", "dialog-error" }, 16, true },
        { NSImageNameStatusNone, { "user-offline" }, 16, true },
        { NSImageNameAdvanced, { "preferences-other", "applications-system", "preferences-system" }, 32, false },
        { NSImageNameRevealFreestandingTemplate, { "document-open-recent-symbolic" }, 16, false },
        { NSImageNamePreferencesGeneral, { "preferences-system", "preferences-desktop" }, 32, false },
        { NSImageNameInfo, { "dialog-information", "help-about" }, 32, true },
        { NSImageNameTrashFull, { "user-trash-full", "user-trash" }, 32, false },
    };

    NSImage makeSystemImage(const SystemImage& row)
    {
        const std::string name(row.name);
        const std::string own = Bundle::main().pathForResource("System Images/" + name + ".svg").value_or("");
        ImageContent content = ThemedImage { row.themeNames, own };
        if (row.prefersOwn && !own.empty())
            content = ImageFile { own };
        NSImage image(std::make_shared<KnownImageSource>(name, std::move(content)), { row.size, row.size });
        image.setTemplate(row.name.ends_with("Template"));
        return image;
    }

    bool isExecutableEntry(const std::string& path)
    {
        struct stat status { };
        return path.ends_with(".desktop") && stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)
            && access(path.c_str(), X_OK) == 0;
    }

} // namespace

LinuxWorkspace::LinuxWorkspace(ApplicationBundles& bundles, MessageHandler showMessage)
    : bundles_(bundles),
      showMessage_(std::move(showMessage)),
      launcher_(bundles.environment(), [this](const Error& error) { tell(error.path, error); }),
      icons_([&bundles](const std::string& package) { return bundles.entryOfBundle(package); },
             bundles.environment().languages)
{
}

NSImage LinuxWorkspace::icon(std::string_view forFile, EntryKind kind)
{
    if (iconsGeneration_ != bundles_.generation()) {
        icons_.dropPackages();
        iconsGeneration_ = bundles_.generation();
    }
    return { icons_.source(forFile, kind), kFileIconSize };
}

std::optional<NSImage> LinuxWorkspace::systemImage(std::string_view name)
{
    if (const auto known = systemImages_.find(std::string(name)); known != systemImages_.end())
        return known->second;
    const auto* row = std::find_if(std::begin(kSystemImages), std::end(kSystemImages),
                                   [&](const SystemImage& candidate) { return candidate.name == name; });
    if (row == std::end(kSystemImages))
        return std::nullopt;
    return systemImages_.emplace(name, makeSystemImage(*row)).first->second;
}

bool LinuxWorkspace::open(const URL& url)
{
    return finish(url.path(), url.path(), start(url.path()));
}

Result<void> LinuxWorkspace::start(const std::string& path)
{
    if (const auto entry = bundles_.entryOfBundle(path))
        return launcher_.startEntry(*entry);
    if (path.ends_with(".AppDir") && NSWorkspace::isFilePackage(path))
        return launcher_.startProgram(path + "/AppRun");
    if (isExecutableEntry(path))
        return launcher_.startEntry(path);
    return launcher_.openFile(path);
}

bool LinuxWorkspace::launchApplication(const std::string& withBundleIdentifier)
{
    const bool isSettings = withBundleIdentifier == kSettingsIdentifier;
    const auto entry = isSettings ? bundles_.settingsProgramEntry() : bundles_.entryFile(withBundleIdentifier);
    if (entry)
        return finish(isSettings ? ApplicationBundles::kSettingsTitle : *entry, *entry, launcher_.startEntry(*entry));
    const char* reason = isSettings ? "This desktop has no settings program that is installed."
                                    : "No application of that name is installed.";
    return tell(isSettings ? ApplicationBundles::kSettingsTitle : withBundleIdentifier, Error { 0, reason, {} });
}

bool LinuxWorkspace::tell(const std::string& what, const Result<void>& result) const
{
    if (!result && showMessage_) {
        const std::string name(path::lastPathComponent(what));
        showMessage_("“" + unicode::displayText(name) + "” couldn’t be opened.", result.error().description());
    }
    return result.hasValue();
}

bool LinuxWorkspace::finish(const std::string& what, const std::string& path, const Result<void>& result) const
{
    if (result && openedHandler_)
        openedHandler_(path);
    return tell(what, result);
}

} // namespace quillbox
