#pragma once

#include "FileQuestion.h"
#include "Installed.h"
#include "MountHelper.h"
#include "PathRoute.h"
#include "Result.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <unordered_set>

namespace quillbox {

// Keeps a mount that does not answer from stopping the program. Whoever asks about a file asks here first (askInTime):
// if the path leads to a mount that may hang, a helper process answers within a bounded time; otherwise the caller asks
// the file system directly. A mount that was silent for too long counts as out of reach until the menu is next opened.
// main() makes one of these for the life of the program; without one everything is asked directly.
class MountInquiry {
public:
    struct Limits {
        // The longest that one question may take.
        std::chrono::milliseconds question { 300 };
        // The longest that all questions together may take while one menu is opened or one action is carried out.
        std::chrono::milliseconds opening { 1000 };
    };

    // `helperProgram` is the path of the program of MountHelper. `onSilence` is told when a mount does not answer, and
    // again only after it has answered in between.
    MountInquiry(std::string helperProgram, std::function<void(const Error&)> onSilence)
        : MountInquiry(std::move(helperProgram), std::move(onSilence), Limits())
    {
    }
    MountInquiry(std::string helperProgram, std::function<void(const Error&)> onSilence, Limits limits);
    MountInquiry(const MountInquiry&) = delete;
    MountInquiry& operator=(const MountInquiry&) = delete;

    // Called when the user begins something new: silent mounts are asked again.
    static void beginOpening();
    // Called when the user goes on with it by opening a submenu: silent mounts stay out of reach, and the time for all
    // questions begins anew.
    static void continueOpening();

    // Whether asking about the path itself can't hang; a link at its end is not followed.
    bool isFreeToAsk(const std::string& path);
    // Returns nothing if the path leads to no mount that may hang. The answer has the error ETIMEDOUT if the mount does
    // not answer.
    std::optional<FileAnswer> ask(const FileQuestion& question);
    // For what no path of ours tells the way of: always asked of the helper, which may take as long as an opening.
    // ETIMEDOUT where it does not answer.
    FileAnswer askHelper(const FileQuestion& question);

    // Returns the id of the process that asks now, or -1. It is there for tests.
    pid_t helperProcess() const { return helper_.processId(); }

private:
    FileAnswer askMount(const FileQuestion& question, const MountTable::Mount& mount);
    void tellOnce(const MountTable::Mount& mount, MountHelper::Failure failure);

    MountHelper helper_;
    PathRouter router_;
    std::function<void(const Error&)> onSilence_;
    Limits limits_;
    std::chrono::nanoseconds spent_ {};
    // The ids of mounts that are out of reach until the menu is next opened.
    std::unordered_set<std::uint64_t> passedOver_;
    // The ids of mounts whose silence has been reported.
    std::unordered_set<std::uint64_t> told_;
    Installed<MountInquiry> installed_ { *this };
};

// Returns the answer about a path on a mount that may hang, with the error ETIMEDOUT if it stays away; nothing if the
// file system can be asked directly.
std::optional<FileAnswer> askInTime(FileQuestion::Kind kind, const std::string& path, std::uint64_t number = 0,
                                    std::string bytes = {});

} // namespace quillbox
