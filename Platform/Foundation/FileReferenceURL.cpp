#include "FileReferenceURL.h"

#include "FileDescriptor.h"
#include "FileIdentity.h"
#include "FileManager.h"
#include "LiveFileReferences.h"
#include "MountInquiry.h"
#include "URL.h"

#include <algorithm>
#include <climits>
#include <fcntl.h>
#include <vector>

namespace quillbox {

namespace {

    // The file that a reference follows.
    struct FollowedFile {
        FileIdentity identity;
        // Names the file without opening it. Empty on mounts that must stay free to be unmounted.
        FileDescriptor descriptor;
        std::string lastPath;

        std::optional<std::string> path();
    };

    std::vector<FollowedFile*>& followedFiles()
    {
        // Never destroyed: references may live in lists that are destroyed later, when the process exits.
        static auto* const files = new std::vector<FollowedFile*>;
        return *files;
    }

    bool leadsTo(const std::string& path, const FileIdentity& identity)
    {
        const Result<FileStatus> found = lookAtFile(path);
        return found && found->identity == identity;
    }

    // A held descriptor keeps its file system from being unmounted, but the two mounts asked for here last as long as a
    // session. They are compared as mounts, not by their devices, since a bind mount has the device of another.
    bool isOnLastingMount(const FileStatus& file)
    {
        const std::string home = FileManager::defaultManager().homeDirectoryForCurrentUser().path();
        for (const std::string& place : { std::string("/"), home }) {
            // The "." makes a home that is a link count as the directory it leads to.
            const Result<FileStatus> root = lookAtFile(path::appending(place, "."));
            if (file.mountId && root && root->mountId == file.mountId)
                return true;
        }
        return false;
    }

    std::string linkOfDescriptor(int descriptor)
    {
        char target[PATH_MAX];
        const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
        const ssize_t length = ::readlink(link.c_str(), target, sizeof target);
        return length > 0 ? std::string(target, static_cast<std::size_t>(length)) : std::string();
    }

    std::optional<std::string> FollowedFile::path()
    {
        // The link of a deleted file reads "... (deleted)", and so does that of a file with such a name: only the
        // identity tells them apart.
        const std::string candidate = descriptor ? linkOfDescriptor(descriptor.get()) : lastPath;
        if (!leadsTo(candidate, identity))
            return std::nullopt;
        lastPath = candidate;
        return candidate;
    }

    // Returns an empty descriptor if another file has taken the path meanwhile, or if no more may be held.
    FileDescriptor descriptorFor(const FileStatus& file, const std::string& path)
    {
        const auto held = std::count_if(followedFiles().begin(), followedFiles().end(),
                                        [](const FollowedFile* other) { return static_cast<bool>(other->descriptor); });
        MountInquiry* inquiry = Installed<MountInquiry>::current();
        // Opening asks the file system, and no descriptor is worth waiting for one that may not answer.
        if (held >= FileReferenceURL::kMaximumDescriptors || !isOnLastingMount(file)
            || (inquiry && !inquiry->isFreeToAsk(path)))
            return {};
        FileDescriptor descriptor(::open(path.c_str(), O_PATH | O_CLOEXEC | O_NOFOLLOW));
        if (!descriptor)
            return {};
        const Result<FileStatus> opened = lookAtDescriptor(descriptor.get());
        if (!opened || opened->identity != file.identity || opened->mountId != file.mountId)
            return {};
        return descriptor;
    }

} // namespace

struct FileReferenceURL::State {
    State(const FileStatus& status, const std::string& path)
        : file { status.identity, descriptorFor(status, path), path }
    {
        followedFiles().push_back(&file);
    }
    ~State() { std::erase(followedFiles(), &file); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    FollowedFile file;
};

FileReferenceURL::FileReferenceURL(std::shared_ptr<State> state) : state_(std::move(state)) { }

std::optional<std::string> FileReferenceURL::path() const
{
    return state_->file.path();
}

Result<FileReferenceURL> URL::fileReferenceURL() const
{
    const Result<FileStatus> file = lookAtFile(path_);
    if (!file)
        return file.error();
    return FileReferenceURL(std::make_shared<FileReferenceURL::State>(*file, path_));
}

std::optional<std::string> pathOfLiveReference(const std::function<bool(const FileIdentity&)>& isWanted)
{
    for (FollowedFile* file : followedFiles()) {
        if (!isWanted(file->identity))
            continue;
        if (std::optional<std::string> path = file->path())
            return path;
    }
    return std::nullopt;
}

} // namespace quillbox
