#include "FileHandler.h"

#include "FileContents.h"
#include "MountInquiry.h"
#include "PathStatus.h"
#include "URL.h"

#include <fcntl.h>

namespace quillbox {

namespace {

    constexpr std::size_t kTellingBytes = 4096;

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

} // namespace

Result<GLibObject<GAppInfo>> defaultHandler(const std::string& path)
{
    GError* problem = nullptr;
    GAppInfo* info = nullptr;
    if (MountInquiry* inquiry = Installed<MountInquiry>::current(); inquiry && !inquiry->isFreeToAsk(path)) {
        const Result<struct stat> status = statusOfPath(path);
        if (!status)
            return status.error();
        info = g_app_info_get_default_for_type(contentType(path, *status).get(), FALSE);
        if (!info)
            return Error { 0, "no application is registered as handling this file", path };
    } else {
        // Of the local file system: the default one starts daemons first.
        const GLibObject<GFile> file(g_vfs_get_file_for_path(g_vfs_get_local(), path.c_str()));
        info = g_file_query_default_handler(file.get(), nullptr, &problem);
        if (!info)
            return errorFrom(GLibError(problem), path);
    }
    return GLibObject<GAppInfo>(info);
}

} // namespace quillbox
