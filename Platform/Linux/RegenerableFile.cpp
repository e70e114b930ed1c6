#include "RegenerableFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace quillbox {

namespace {

    // Returns the error number, or 0.
    int writeFile(const std::string& path, std::string_view content)
    {
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600);
        if (file < 0)
            return errno;
        while (!content.empty()) {
            const ssize_t count = write(file, content.data(), content.size());
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0) {
                const int error = errno;
                close(file);
                return error;
            }
            content.remove_prefix(static_cast<std::size_t>(count));
        }
        // Some file systems report a full disk only when the file is closed.
        return close(file) == 0 ? 0 : errno;
    }

} // namespace

Result<void> replaceRegenerableFile(const std::string& path, std::string_view content)
{
    const std::string unfinished = path + ".new";
    int error = writeFile(unfinished, content);
    if (error == 0 && rename(unfinished.c_str(), path.c_str()) != 0)
        error = errno;
    if (error == 0)
        return {};
    unlink(unfinished.c_str());
    return Error::fromErrno(error, "couldn't write", path);
}

} // namespace quillbox
