#include "DirectoryNames.h"

#include <dirent.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string_view>

namespace quillbox {

Result<std::vector<std::string>> sortedNames(const std::string& directory)
{
    constexpr const char* kWhat = "couldn't list";
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(directory.c_str()), closedir);
    if (!stream)
        return Error::fromErrno(errno, kWhat, directory);
    std::vector<std::string> names;
    while (true) {
        // Null means the end as well as an error, which only this number tells apart.
        errno = 0;
        const dirent* entry = readdir(stream.get());
        if (!entry && errno != 0)
            return Error::fromErrno(errno, kWhat, directory);
        if (!entry)
            break;
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool isAbsence(int errorNumber)
{
    return errorNumber == ENOENT || errorNumber == ENOTDIR || errorNumber == ELOOP || errorNumber == ENAMETOOLONG;
}

} // namespace quillbox
