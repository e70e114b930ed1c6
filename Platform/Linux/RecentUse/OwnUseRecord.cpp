#include "OwnUseRecord.h"

#include "DamagedFile.h"
#include "Date.h"
#include "FileContents.h"
#include "PropertyList.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace quillbox {

namespace {

    constexpr std::size_t kLargestRecord = 16 << 20;
    constexpr const char* kFiles = "Files";
    constexpr const char* kApplications = "Applications";
    constexpr const char* kPath = "Path";
    constexpr const char* kDesktopId = "DesktopID";
    constexpr const char* kLastUsed = "LastUsed";

    double now()
    {
        return Date::now().secondsSinceUnixEpoch();
    }

    template <class T>
    const T* valueOf(const PropertyList& list, const char* key)
    {
        const PropertyList* value = list.value(key);
        return value ? value->as<T>() : nullptr;
    }

    // Returns nothing if the bytes are no such record. Entries that can't be understood are left out.
    std::optional<RecentUses> usesFrom(const Data& bytes)
    {
        const Result<PropertyList> list = PropertyList::fromData(bytes);
        const auto* files = list ? valueOf<PropertyList::Array>(*list, kFiles) : nullptr;
        const auto* applications = list ? valueOf<PropertyList::Array>(*list, kApplications) : nullptr;
        if (!files || !applications)
            return std::nullopt;
        RecentUses uses;
        for (const PropertyList& entry : *files) {
            const auto* path = valueOf<Data>(entry, kPath);
            const auto* when = valueOf<Date>(entry, kLastUsed);
            if (path && when)
                uses.addFile(std::string(path->begin(), path->end()), when->secondsSinceUnixEpoch());
        }
        for (const PropertyList& entry : *applications) {
            const auto* desktopId = valueOf<std::string>(entry, kDesktopId);
            const auto* when = valueOf<Date>(entry, kLastUsed);
            if (desktopId && when)
                uses.applications.push_back({ *desktopId, {}, {}, when->secondsSinceUnixEpoch() });
        }
        return uses;
    }

    Result<Data> bytesOf(const RecentUses& uses)
    {
        PropertyList::Array files;
        for (const FileUse& use : uses.files) {
            files.emplace_back(PropertyList::Dictionary { { kPath, Data(use.path.begin(), use.path.end()) },
                                                          { kLastUsed, Date::sinceUnixEpoch(use.when) } });
        }
        PropertyList::Array applications;
        for (const ApplicationUse& use : uses.applications) {
            applications.emplace_back(PropertyList::Dictionary { { kDesktopId, use.desktopId },
                                                                 { kLastUsed, Date::sinceUnixEpoch(use.when) } });
        }
        return PropertyList(PropertyList::Dictionary { { kFiles, files }, { kApplications, applications } })
            .binaryData();
    }

    // Only one use is added at a time, so at most one is too many.
    void dropOldest(RecentUses& uses)
    {
        if (uses.files.size() + uses.applications.size() <= OwnUseRecord::kCapacity)
            return;
        const auto isOlder = [](const auto& a, const auto& b) { return a.when < b.when; };
        const auto file = std::min_element(uses.files.begin(), uses.files.end(), isOlder);
        const auto application = std::min_element(uses.applications.begin(), uses.applications.end(), isOlder);
        if (application == uses.applications.end() || (file != uses.files.end() && file->when <= application->when))
            uses.files.erase(file);
        else
            uses.applications.erase(application);
    }

} // namespace

OwnUseRecord::OwnUseRecord(const std::string& dataHome, std::function<void(const Error&)> onError)
    : UseRecord({ dataHome + "/quillbox/recent-use.plist" }),
      onError_(std::move(onError))
{
}

void OwnUseRecord::addFile(const std::string& path)
{
    refresh();
    RecentUses changed = uses();
    std::erase_if(changed.files, [&](const FileUse& use) { return use.path == path; });
    changed.addFile(path, now());
    store(std::move(changed));
}

void OwnUseRecord::addApplication(const std::string& desktopId)
{
    refresh();
    RecentUses changed = uses();
    std::erase_if(changed.applications, [&](const ApplicationUse& use) { return use.desktopId == desktopId; });
    changed.applications.push_back({ desktopId, {}, {}, now() });
    store(std::move(changed));
}

std::optional<RecentUses> OwnUseRecord::read()
{
    const Result<Data> bytes = readFile(file(), kLargestRecord);
    isUnreadable_ = !bytes && bytes.error().code != ENOENT;
    if (isUnreadable_) {
        report(bytes.error());
        return std::nullopt;
    }
    if (!bytes)
        return RecentUses();
    if (auto uses = usesFrom(*bytes))
        return uses;
    const Result<std::string> kept = setDamagedFileAside(file());
    isUnreadable_ = !kept;
    report(kept ? Error { 0, "the record of what was opened was damaged; it was kept as", *kept } : kept.error());
    return kept ? std::optional(RecentUses()) : std::nullopt;
}

void OwnUseRecord::store(RecentUses uses)
{
    dropOldest(uses);
    const Result<Data> bytes = bytesOf(uses);
    replaceUses(std::move(uses));
    if (isUnreadable_)
        return;
    const Result<void> written = bytes ? replaceFile(file(), *bytes, 0600) : Result<void>(bytes.error());
    if (written)
        reported_.reset();
    else
        report(written.error());
    markFilesRead();
}

void OwnUseRecord::report(const Error& error)
{
    if (reported_ == error)
        return;
    reported_ = error;
    if (onError_)
        onError_(error);
}

} // namespace quillbox
