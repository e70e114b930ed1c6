#include "FoundBundle.h"

#include "DirectoryNames.h"
#include "FileContents.h"
#include "FileManager.h"
#include "PropertyList.h"
#include "URL.h"

#include <unistd.h>

#include <cerrno>

namespace quillbox {

namespace {

    constexpr std::size_t kLargestInfo = 1 << 20;

    std::string textIn(const PropertyList& list, const char* key)
    {
        const PropertyList* value = list.value(key);
        const auto* text = value ? value->as<std::string>() : nullptr;
        return text ? *text : std::string();
    }

    // Fails only if the Info.plist can't be read; a missing or damaged one is made again.
    Result<void> readInfo(FoundBundle& bundle)
    {
        const Result<Data> bytes = readFile(infoPath(bundle.path()), kLargestInfo);
        if (!bytes) {
            const int code = bytes.error().code;
            const bool isDamage = isAbsence(code) || code == EISDIR || code == EINVAL || code == EFBIG;
            return isDamage ? Result<void>() : bytes.error();
        }
        bundle.info.assign(bytes->begin(), bytes->end());
        if (const auto list = PropertyList::fromData(*bytes)) {
            bundle.desktopId = textIn(*list, "CFBundleIdentifier");
            bundle.title = textIn(*list, "CFBundleName");
            bundle.program = textIn(*list, "CFBundleExecutable");
        }
        return {};
    }

    // Returns whether an unfinished or empty bundle was there and has been removed. A directory with content of others
    // is not removed.
    bool removeLeftover(const std::string& bundle, BundleKind kind)
    {
        if (path::lastPathComponent(bundle).starts_with(kUnfinishedPrefix)) {
            unlink((infoPath(bundle) + ".new").c_str());
            unlink(infoPath(bundle).c_str());
            if (unlink(bundle.c_str()) == 0)
                return true;
        } else if (!bundle.ends_with(extensionOf(kind))) {
            return false;
        }
        rmdir((bundle + "/Contents").c_str());
        return rmdir(bundle.c_str()) == 0;
    }

} // namespace

std::string_view extensionOf(BundleKind kind)
{
    return kind == BundleKind::application ? ".app" : ".prefPane";
}

std::string infoPath(const std::string& bundle)
{
    return bundle + "/Contents/Info.plist";
}

std::string entryLinkPath(const std::string& bundle)
{
    return bundle + "/Contents/Entry.desktop";
}

Result<FoundBundles> readBundles(const std::string& directory, BundleKind kind)
{
    const Result<std::vector<std::string>> names = sortedNames(directory);
    if (!names)
        return names.error();
    FoundBundles found;
    for (const std::string& name : *names) {
        FoundBundle bundle { kind, directory, name, {}, {}, {} };
        const Result<std::string> entry =
            FileManager::defaultManager().destinationOfSymbolicLink(entryLinkPath(bundle.path()));
        if (entry) {
            bundle.entryPath = *entry;
            if (const Result<void> info = readInfo(bundle); !info)
                return info.error();
            found.bundles.push_back(std::move(bundle));
        } else if (!isAbsence(entry.error().code) && entry.error().code != EINVAL) {
            return entry.error();
        } else if (!removeLeftover(bundle.path(), kind)) {
            found.others.push_back(bundle.path());
        }
    }
    return found;
}

} // namespace quillbox
