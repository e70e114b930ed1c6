#include "Bundle.h"

#include "CanonicalPath.h"
#include "FileContents.h"
#include "FileManager.h"
#include "Installed.h"
#include "URL.h"

#include <algorithm>
#include <climits>
#include <unistd.h>
#include <utility>

namespace quillbox {

namespace {

    PropertyList::Dictionary readInfo(const std::string& path)
    {
        constexpr std::size_t kMaximumSize = std::size_t { 4 } << 20;
        const Result<Data> bytes = readFile(path, kMaximumSize);
        if (!bytes)
            return {};
        Result<PropertyList> info = PropertyList::fromData(*bytes);
        auto* dictionary = info ? info->as<PropertyList::Dictionary>() : nullptr;
        return dictionary ? std::move(*dictionary) : PropertyList::Dictionary {};
    }

    bool isFile(const std::string& path)
    {
        const Result<FileKind> kind = FileManager().kind(path);
        return kind && *kind == FileKind::file;
    }

    // Returns an empty path if the system does not tell.
    std::string directoryOfExecutable()
    {
        char target[PATH_MAX];
        const ssize_t length = ::readlink("/proc/self/exe", target, sizeof target);
        const std::string executable(target, static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
        return std::string(path::deletingLastPathComponent(executable));
    }

    // Returns an empty path if there is no such directory.
    std::string resourceDirectoryOfExecutable()
    {
        // The resources lie beside the executable, in the place of an installed program, or in a directory above that
        // of a build.
        for (const char* place :
             { "Resources", "../share/quillbox", "../Resources", "../../Resources", "../../../Resources" }) {
            const Result<std::string> canonical = canonicalPath(path::appending(directoryOfExecutable(), place));
            if (canonical && isFile(path::appending(*canonical, "Info.plist")))
                return *canonical;
        }
        return {};
    }

} // namespace

std::optional<Bundle> Bundle::atPath(const std::string& path)
{
    if (!FileManager().isDirectory(path))
        return std::nullopt;
    Bundle bundle;
    bundle.resourceDirectory_ = path::appending(path, "Contents/Resources");
    bundle.info_ = readInfo(path::appending(path, "Contents/Info.plist"));
    return bundle;
}

std::optional<std::string> Bundle::infoString(const std::string& key) const
{
    const auto entry = info_.find(key);
    const auto* text = entry == info_.end() ? nullptr : entry->second.as<std::string>();
    return text ? std::optional(*text) : std::nullopt;
}

std::optional<std::string> Bundle::pathForResource(const std::string& name) const
{
    if (resourceDirectory_.empty() || name.empty())
        return std::nullopt;
    std::string path = path::appending(resourceDirectory_, name);
    return isFile(path) ? std::optional(std::move(path)) : std::nullopt;
}

std::optional<std::string> Bundle::pathForAuxiliaryExecutable(const std::string& name)
{
    for (const char* place : { ".", QUILLBOX_AUXILIARY_EXECUTABLES }) {
        const std::string path = path::appending(path::appending(directoryOfExecutable(), place), name);
        if (isFile(path))
            return path;
    }
    return std::nullopt;
}

const Bundle& Bundle::main()
{
    static Bundle bundle;
    // The installed directory from which the bundle was read; empty for the application's own resources.
    static std::optional<std::string> readFrom;
    const ApplicationResources* const installed = Installed<const ApplicationResources>::current();
    const std::string& wanted = installed ? installed->directory : std::string();
    if (readFrom != wanted) {
        readFrom = wanted;
        bundle.resourceDirectory_ = wanted.empty() ? resourceDirectoryOfExecutable() : wanted;
        bundle.info_ = bundle.resourceDirectory_.empty()
            ? PropertyList::Dictionary {}
            : readInfo(path::appending(bundle.resourceDirectory_, "Info.plist"));
    }
    return bundle;
}

} // namespace quillbox
