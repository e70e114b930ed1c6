#include "DirectoryNames.h"

#include "FileAnswers.h"
#include "MountInquiry.h"

#include <dirent.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string_view>

namespace quillbox {

static std::vector<std::string> sortedNames(const DirectoryListing& listing)
{
    std::vector<std::string> names;
    names.reserve(listing.count());
    for (std::size_t i = 0; i < listing.count(); ++i)
        names.emplace_back(listing.name(i));
    std::sort(names.begin(), names.end());
    return names;
}

Result<std::vector<std::string>> sortedNames(const std::string& directory)
{
    constexpr const char* kWhat = "couldn't list";
    if (const auto answer = askInTime(FileQuestion::Kind::listing, directory)) {
        const Result<DirectoryListing> listing = answer::listing(*answer, directory);
        return listing ? sortedNames(*listing) : Result<std::vector<std::string>>(listing.error());
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(directory.c_str()), closedir);
    if (!stream)
        return Error::fromErrno(errno, kWhat, directory);
    std::vector<std::string> names;
    while (true) {
        // Null means either the end or an error; only errno tells them apart.
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
