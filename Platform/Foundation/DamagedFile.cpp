#include "DamagedFile.h"

#include "Date.h"
#include "FileContents.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillbox {

namespace {

    // Returns the name to try at this attempt, counted from 0.
    std::string nameForDamaged(const std::string& path, int attempt)
    {
        // "2001-02-03 04:05:06 +0000" becomes "20010203-040506".
        std::string time = Date::now().description().substr(0, 19);
        std::replace(time.begin(), time.end(), ' ', '.');
        std::erase_if(time, [](char c) { return c == '-' || c == ':'; });
        std::replace(time.begin(), time.end(), '.', '-');
        return path + ".damaged-" + time + (attempt == 0 ? "" : "-" + std::to_string(attempt + 1));
    }

    // Renames a file without replacing another. Returns the error number, or 0.
    int renameWithoutReplacing(const std::string& from, const std::string& to)
    {
        if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
            return 0;
        if (errno != EINVAL && errno != ENOSYS)
            return errno;
        // The file system doesn't know the flag, so the file gets its second name before it loses the first.
        if (::link(from.c_str(), to.c_str()) != 0)
            return errno;
        return ::unlink(from.c_str()) == 0 ? 0 : errno;
    }

} // namespace

Result<std::string> setDamagedFileAside(const std::string& path)
{
    const Result<std::string> place = followingLinks(path);
    if (!place)
        return place.error();
    constexpr int kAttempts = 1000;
    int error = EEXIST;
    for (int attempt = 0; attempt < kAttempts && error == EEXIST; ++attempt) {
        const std::string name = nameForDamaged(*place, attempt);
        error = renameWithoutReplacing(*place, name);
        if (error == 0)
            return name;
    }
    return Error::fromErrno(error, "couldn't set aside", *place);
}

} // namespace quillbox
