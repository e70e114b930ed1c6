#include "CanonicalPath.h"

#include "FileAnswers.h"
#include "MountInquiry.h"
#include "URL.h"

#include <cerrno>
#include <cstdlib>
#include <memory>

namespace quillbox {

Result<std::string> canonicalPath(const std::string& path)
{
    constexpr const char* kWhat = "couldn't find where the path leads:";
    if (path.empty() || path.find('\0') != std::string::npos)
        return Error::fromErrno(ENOENT, kWhat, path);
    if (const auto answer = askInTime(FileQuestion::Kind::canonicalPath, path))
        return answer::text(*answer, kWhat, path);
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), std::free);
    if (!real)
        return Error::fromErrno(errno, kWhat, path);
    return std::string(real.get());
}

Result<std::string> pathInCanonicalDirectory(const std::string& path)
{
    const std::string name(path::lastPathComponent(path));
    if (name == "/" || name == "." || name == "..")
        return canonicalPath(path);
    Result<std::string> directory = canonicalPath(std::string(path::deletingLastPathComponent(path)));
    return directory ? path::appending(*directory, name) : directory;
}

} // namespace quillbox
