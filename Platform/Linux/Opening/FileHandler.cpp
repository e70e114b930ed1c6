#include "FileHandler.h"

#include "BundleState.h"
#include "DefaultApplicationAnswer.h"
#include "DesktopEntry.h"
#include "DesktopEntryScan.h"
#include "FileContents.h"
#include "MountInquiry.h"
#include "MountTable.h"
#include "PathStatus.h"
#include "URL.h"

#include <gio/gdesktopappinfo.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>

namespace quillbox {

namespace {

    constexpr std::size_t kTellingBytes = 4096;
    constexpr const char* kNoHandler = "no application is registered as handling this file";

    Error errorFrom(const GLibError& error, std::string path)
    {
        return Error { 0, error ? error->message : "couldn't be opened", std::move(path) };
    }

    GLibText contentType(const std::string& path, const struct stat& status)
    {
        if (S_ISDIR(status.st_mode))
            return GLibText(g_strdup("inode/directory"));
        const std::string beginning =
            S_ISREG(status.st_mode) ? readSmallFile(AT_FDCWD, path.c_str(), kTellingBytes) : std::string();
        return GLibText(g_content_type_guess(std::string(path::lastPathComponent(path)).c_str(),
                                             reinterpret_cast<const guchar*>(beginning.data()), beginning.size(),
                                             nullptr));
    }

    // Whether GIO might wait for one of them for ever.
    bool isAnyApplicationOutOfReach(const XdgEnvironment& environment)
    {
        if (!Installed<MountInquiry>::current() || !MountTable::current().hasAnyThatMayHang())
            return false;
        BundleState state(environment);
        UnreadSources unread;
        const std::vector<DesktopEntryFile> files = scanDesktopEntries(environment, state, unread);
        return std::any_of(unread.errors().begin(), unread.errors().end(),
                           [](const Error& error) { return error.code == ETIMEDOUT; })
            || std::any_of(files.begin(), files.end(),
                           [](const DesktopEntryFile& file) { return !answersInTime(file.path); });
    }

    Result<std::string> handlersFromHelper(const std::string& type, const std::string& path)
    {
        FileAnswer answer =
            Installed<MountInquiry>::current()->askHelper({ FileQuestion::Kind::defaultApplication, "/", 1, type });
        if (answer.error != 0)
            return Error::fromErrno(answer.error, "couldn't find out which applications open it", path);
        return std::move(answer.bytes);
    }

    Result<GLibObject<GAppInfo>> handlerFromHelper(const std::string& type, const std::string& path)
    {
        const FileAnswer answer =
            Installed<MountInquiry>::current()->askHelper({ FileQuestion::Kind::defaultApplication, "/", 0, type });
        if (answer.error == ETIMEDOUT)
            return Error::fromErrno(ETIMEDOUT, "couldn't find out which application opens it", path);
        GDesktopAppInfo* info =
            answer.error == 0 ? g_desktop_app_info_new_from_filename(answer.bytes.c_str()) : nullptr;
        if (!info)
            return Error { 0, kNoHandler, path };
        return GLibObject<GAppInfo>(G_APP_INFO(info));
    }

} // namespace

Result<void> answersInTime(const std::string& entryPath)
{
    const auto entry = DesktopEntry::read(entryPath, {});
    if (!entry && entry.error().code == ETIMEDOUT)
        return entry.error();
    if (!entry || !*entry)
        return {};
    for (const std::string& program : { (*entry)->program, (*entry)->tryExec }) {
        if (!program.starts_with('/'))
            continue;
        if (const Result<struct stat> status = statusOfPath(program); !status && status.error().code == ETIMEDOUT)
            return status.error();
    }
    return {};
}

Result<GLibObject<GAppInfo>> defaultHandler(const std::string& path, const XdgEnvironment& environment)
{
    MountInquiry* inquiry = Installed<MountInquiry>::current();
    const bool isFree = !inquiry || inquiry->isFreeToAsk(path);
    const bool isAskedElsewhere = isAnyApplicationOutOfReach(environment);
    if (isFree && !isAskedElsewhere) {
        // The local implementation is asked, because the default one would start daemons first.
        const GLibObject<GFile> file(g_vfs_get_file_for_path(g_vfs_get_local(), path.c_str()));
        GError* problem = nullptr;
        GLibObject<GAppInfo> info(g_file_query_default_handler(file.get(), nullptr, &problem));
        if (!info)
            return errorFrom(GLibError(problem), path);
        return info;
    }
    const Result<struct stat> status = statusOfPath(path);
    if (!status)
        return status.error();
    const GLibText type = contentType(path, *status);
    if (isAskedElsewhere)
        return handlerFromHelper(type.get(), path);
    GLibObject<GAppInfo> info(g_app_info_get_default_for_type(type.get(), FALSE));
    if (!info)
        return Error { 0, kNoHandler, path };
    return info;
}

Result<std::vector<std::string>> handlerEntries(const std::string& path, const XdgEnvironment& environment)
{
    const Result<struct stat> status = statusOfPath(path);
    if (!status)
        return status.error();
    const GLibText type = contentType(path, *status);
    const Result<std::string> joined = isAnyApplicationOutOfReach(environment)
        ? handlersFromHelper(type.get(), path)
        : Result<std::string>(entriesOfHandlers(type.get()));
    if (!joined)
        return joined.error();
    std::vector<std::string> entries;
    for (std::size_t begin = 0; begin < joined->size(); begin += entries.back().size() + 1)
        entries.emplace_back(joined->c_str() + begin);
    return entries;
}

} // namespace quillbox
