#include "ApplicationLookup.h"

#include "ApplicationBundles.h"
#include "URL.h"

namespace quillbox {

ApplicationLookup::ApplicationLookup(const std::vector<InstalledBundle>& bundles)
{
    for (const InstalledBundle& application : bundles) {
        if (application.kind != BundleKind::application)
            continue;
        // The settings program may also have a bundle under its own name, which is more informative.
        const auto [found, isNew] = byId_.emplace(application.desktopId, &application);
        if (!isNew && application.title == ApplicationBundles::kSettingsTitle)
            continue;
        found->second = &application;
    }
    for (const auto& [desktopId, application] : byId_)
        byProgram_.emplace(path::lastPathComponent(application->program), application);
}

const InstalledBundle* ApplicationLookup::byId(const std::string& desktopId) const
{
    const auto found = byId_.find(desktopId);
    return found == byId_.end() ? nullptr : found->second;
}

const InstalledBundle* ApplicationLookup::find(const ApplicationUse& use) const
{
    if (const InstalledBundle* application = byId(use.desktopId))
        return application;
    if (use.program.empty())
        return nullptr;
    if (const InstalledBundle* application = byId(use.program + ".desktop"))
        return application;
    const auto [first, last] = byProgram_.equal_range(use.program);
    if (first != last && std::next(first) == last)
        return first->second;
    for (auto candidate = first; candidate != last; ++candidate) {
        if (candidate->second->title == use.title)
            return candidate->second;
    }
    return nullptr;
}

} // namespace quillbox
