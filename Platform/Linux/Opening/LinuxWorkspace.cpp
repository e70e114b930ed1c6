#include "LinuxWorkspace.h"

#include "ApplicationBundles.h"
#include "Bundle.h"
#include "CanonicalPath.h"
#include "DesktopEntry.h"
#include "LaunchTrust.h"
#include "PathStatus.h"
#include "Unicode.h"

#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace quillbox {

namespace {

    constexpr std::string_view kSettingsIdentifier = "com.apple.systempreferences";

    // The size of a file's icon until another one is set. Most themes draw this size best.
    constexpr NSSize kFileIconSize { 32, 32 };

    struct SystemImage {
        std::string_view name;
        // Its names in icon themes, best first.
        std::vector<std::string> themeNames;
        double size;
        // Whether our own image is used even if the theme has one, because themes use the name for different meanings.
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

} // namespace

LinuxWorkspace::LinuxWorkspace(ApplicationBundles& bundles, FailureCallback onFailure)
    : bundles_(bundles),
      onFailure_(std::move(onFailure)),
      launcher_(bundles.environment(), [this](const Error& error) { tell(error.path, error); }),
      icons_(
          [&bundles](const std::string& package) {
              const InstalledBundle* bundle = bundles.bundleAt(package);
              return bundle ? std::optional(bundle->entryPath) : std::nullopt;
          },
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
    const Result<std::string> path = canonicalPath(url.path());
    return path ? finish(url.path(), *path, start(*path)) : tell(url.path(), path.error());
}

Result<void> LinuxWorkspace::start(const std::string& path)
{
    if (const InstalledBundle* bundle = bundles_.bundleAt(path))
        return launcher_.startEntry(bundle->entryPath);
    if (path.ends_with(".AppDir") && NSWorkspace::isFilePackage(path))
        return startAppDir(path);
    if (path.ends_with(".desktop") && mayBeStarted(path))
        return launcher_.startEntry(path);
    return launcher_.openFile(path);
}

Result<void> LinuxWorkspace::startAppDir(const std::string& path)
{
    const std::string program = path + "/AppRun";
    const Result<std::string> file = canonicalPath(program);
    // A program that must not be started because of its origin is shown instead; one that can't be started is an error.
    if (file && isAccessible(*file, X_OK) && !mayBeStarted(*file))
        return launcher_.openFile(path);
    return launcher_.startProgram(program);
}

Result<std::vector<NSWorkspace::Application>> LinuxWorkspace::applications(const URL& toOpen)
{
    const Result<std::string> path = canonicalPath(toOpen.path());
    if (!path)
        return path.error();
    const Result<std::vector<std::string>> entries = launcher_.entriesFor(*path);
    if (!entries)
        return entries.error();
    std::vector<Application> result;
    for (const std::string& entryPath : *entries) {
        const auto entry = DesktopEntry::read(entryPath, bundles_.environment().languages);
        if (entry && *entry)
            result.push_back({ entryPath, (*entry)->name, { icons_.sourceOfEntry(entryPath), kFileIconSize } });
    }
    return result;
}

bool LinuxWorkspace::open(const URL& url, const Application& withApplication)
{
    const Result<std::string> path = canonicalPath(url.path());
    return path ? finish(url.path(), *path, launcher_.openFile(*path, withApplication.identifier))
                : tell(url.path(), path.error());
}

bool LinuxWorkspace::activateFileViewer(const URL& selecting)
{
    const Result<std::string> file = pathInCanonicalDirectory(fileBehind(selecting.path()));
    const Result<struct stat> status =
        file ? statusOfPath(*file, LastLink::notFollowed) : Result<struct stat>(file.error());
    if (!status)
        return tell(selecting.path(), status.error());
    const std::string token = launcher_.takeActivationToken();
    fileViewer_.show(*file, token, [this, token, directory = std::string(path::deletingLastPathComponent(*file))] {
        launcher_.setActivationToken(token);
        tell(directory, launcher_.openFile(directory));
    });
    return true;
}

std::string LinuxWorkspace::fileBehind(const std::string& path)
{
    const InstalledBundle* bundle = bundles_.bundleAt(path);
    return bundle ? bundle->entryPath : path;
}

bool LinuxWorkspace::launchApplication(const std::string& withBundleIdentifier)
{
    bundles_.bringUpToDate();
    const bool isSettings = withBundleIdentifier == kSettingsIdentifier;
    const auto entry = isSettings ? bundles_.settingsProgramEntry() : entryOfApplication(withBundleIdentifier);
    if (entry)
        return finish(isSettings ? ApplicationBundles::kSettingsTitle : *entry, *entry, launcher_.startEntry(*entry));
    const char* reason = isSettings ? "This desktop has no settings program that is installed."
                                    : "No application of that name is installed.";
    return tell(isSettings ? ApplicationBundles::kSettingsTitle : withBundleIdentifier, Error { 0, reason, {} });
}

std::optional<std::string> LinuxWorkspace::entryOfApplication(const std::string& identifier) const
{
    const auto& all = bundles_.bundles();
    const auto found = std::find_if(all.begin(), all.end(), [&](const InstalledBundle& bundle) {
        return bundle.kind == BundleKind::application
            && (bundle.desktopId == identifier || bundle.desktopId == identifier + ".desktop");
    });
    return found == all.end() ? std::nullopt : std::optional(found->entryPath);
}

bool LinuxWorkspace::tell(const std::string& what, const Result<void>& result) const
{
    if (!result && onFailure_) {
        const std::string name(path::lastPathComponent(what));
        onFailure_("“" + unicode::displayText(name) + "” couldn’t be opened.", result.error().description());
    }
    return result.hasValue();
}

bool LinuxWorkspace::finish(const std::string& what, const std::string& path, const Result<void>& result) const
{
    if (result && onOpened)
        onOpened(path);
    return tell(what, result);
}

} // namespace quillbox
