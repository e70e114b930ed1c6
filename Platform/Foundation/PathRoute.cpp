#include "PathRoute.h"

#include "FileDescriptor.h"
#include "URL.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace quillbox {

namespace {

    // The most links that the kernel follows in one path.
    constexpr int kMostLinks = 40;

    bool hasOnlyNames(std::string_view path)
    {
        return path.find("//") == std::string_view::npos && path.find("/./") == std::string_view::npos
            && path.find("/../") == std::string_view::npos && !path.ends_with("/.") && !path.ends_with("/..")
            && !path.ends_with('/');
    }

    // Appends the components in reverse order, so that the next one to walk is the last.
    void pushComponents(std::vector<std::string>& waiting, std::string_view path)
    {
        while (!path.empty()) {
            const std::size_t slash = path.rfind('/');
            const std::string_view name = slash == std::string_view::npos ? path : path.substr(slash + 1);
            // A slash at the end of a path means that a link before it is followed.
            waiting.emplace_back(name.empty() ? "." : name);
            path = path.substr(0, slash == std::string_view::npos ? 0 : slash);
        }
    }

    // Returns nothing if the component is no link. An empty text means that the system tells nothing of it, and so that
    // nothing can be reached behind it.
    std::optional<std::string> readLink(const std::string& path)
    {
        char target[PATH_MAX];
        const ssize_t length = ::readlink(path.c_str(), target, sizeof target);
        if (length >= 0)
            return std::string(target, static_cast<std::size_t>(length));
        return errno == EINVAL ? std::nullopt : std::optional<std::string>("");
    }

    std::optional<MountTable::Mount> walk(const MountTable& table, const std::string& path, LastLink lastLink)
    {
        std::string walked; // without links; empty for the root
        std::vector<std::string> waiting;
        pushComponents(waiting, path);
        for (int links = 0; !waiting.empty();) {
            const std::string name = std::move(waiting.back());
            waiting.pop_back();
            if (name == ".")
                continue;
            if (name == "..") {
                walked.resize(walked.empty() ? 0 : walked.rfind('/'));
                continue;
            }
            std::string next = walked;
            next.append(1, '/').append(name);
            if (const MountTable::Mount* mount = table.firstThatMayHang(next))
                return *mount;
            if (waiting.empty() && lastLink == LastLink::notFollowed)
                return std::nullopt;
            const std::optional<std::string> target = readLink(next);
            if (!target) {
                walked = std::move(next);
                continue;
            }
            if (target->empty() || ++links > kMostLinks)
                return std::nullopt;
            if (target->starts_with('/'))
                walked.clear();
            pushComponents(waiting, *target);
        }
        return std::nullopt;
    }

    // Whether the directory lies where nothing may hang, and its path has no links in it. The kernel stops at the first
    // link without following it.
    bool isFree(const MountTable& table, const std::string& directory)
    {
        if (table.firstThatMayHang(directory))
            return false;
        open_how how {};
        how.flags = O_PATH | O_CLOEXEC;
        how.resolve = RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS;
        return static_cast<bool>(
            FileDescriptor(static_cast<int>(::syscall(SYS_openat2, AT_FDCWD, directory.c_str(), &how, sizeof how))));
    }

    bool isLink(const std::string& path)
    {
        char target;
        return ::readlink(path.c_str(), &target, sizeof target) >= 0;
    }

} // namespace

std::optional<MountTable::Mount> PathRouter::mountThatMayHangOn(const std::string& path, LastLink lastLink)
{
    if (!path.starts_with('/') || path.find('\0') != std::string::npos)
        return std::nullopt;
    const std::string directory(path::deletingLastPathComponent(path));
    // Between two calls of forget() the table counts as it was at the first question.
    const MountTable& table = freeDirectories_.empty() ? MountTable::current() : MountTable::asLastRead();
    if (!table.hasAnyThatMayHang())
        return std::nullopt;
    if (!hasOnlyNames(path))
        return walk(table, path, lastLink);
    if (const MountTable::Mount* mount = table.firstThatMayHang(path))
        return *mount;
    if (!freeDirectories_.contains(directory)) {
        if (!isFree(table, directory))
            return walk(table, path, lastLink);
        freeDirectories_.insert(directory);
    }
    if (lastLink == LastLink::notFollowed || !isLink(path))
        return std::nullopt;
    return walk(table, path, lastLink);
}

void PathRouter::forget()
{
    freeDirectories_.clear();
}

std::optional<MountTable::Mount> mountThatMayHangOn(const std::string& path, LastLink lastLink)
{
    return PathRouter().mountThatMayHangOn(path, lastLink);
}

} // namespace quillbox
