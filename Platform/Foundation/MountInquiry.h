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

// Keeps a mount that does not answer from stopping the program. Whoever asks about a file asks here first
// (askInTime): where the path leads to a mount that may hang, a helper process answers in a bounded time, and all
// others are asked directly, by whoever asked. A mount that was silent for too long counts as out of reach until the
// next opening. main() makes one for the life of the program; without one everything is asked directly.
class MountInquiry {
public:
    struct Limits {
        std::chrono::milliseconds question { 300 };
        // For all questions together while one menu is opened, or one action carried out.
        std::chrono::milliseconds opening { 1000 };
    };

    // `helperProgram` is the path of the program of MountHelper. `onSilence` is told of a mount that does not answer,
    // once until it has answered again.
    MountInquiry(std::string helperProgram, std::function<void(const Error&)> onSilence)
        : MountInquiry(std::move(helperProgram), std::move(onSilence), Limits())
    {
    }
    MountInquiry(std::string helperProgram, std::function<void(const Error&)> onSilence, Limits limits);
    MountInquiry(const MountInquiry&) = delete;
    MountInquiry& operator=(const MountInquiry&) = delete;

    // The person begins something new: silent mounts are asked again.
    static void beginOpening();
    // They go on with it, by opening a submenu: silent mounts stay out of reach, time is given anew.
    static void continueOpening();

    // Whether the path itself, links at its end aside, lies where everything answers.
    bool isFreeToAsk(const std::string& path);
    // None where the path leads to no mount that may hang. ETIMEDOUT where it does not answer.
    std::optional<FileAnswer> ask(const FileQuestion& question);
    // For what no path of ours tells the way of: always asked of the helper, which may take as long as an opening.
    // ETIMEDOUT where it does not answer.
    FileAnswer askHelper(const FileQuestion& question);

    // The process that asks now, or -1: for tests.
    pid_t helperProcess() const { return helper_.processId(); }

private:
    FileAnswer askMount(const FileQuestion& question, const MountTable::Mount& mount);
    void tellOnce(const MountTable::Mount& mount, MountHelper::Failure failure);

    MountHelper helper_;
    PathRouter router_;
    std::function<void(const Error&)> onSilence_;
    Limits limits_;
    std::chrono::nanoseconds spent_ {};
    // By mount id.
    std::unordered_set<std::uint64_t> passedOver_;
    std::unordered_set<std::uint64_t> told_;
    Installed<MountInquiry> installed_ { *this };
};

// The answer about a path on a mount that may hang, its error ETIMEDOUT where it stays away; none where the file
// system can be asked directly.
std::optional<FileAnswer> askInTime(FileQuestion::Kind kind, const std::string& path, std::uint64_t number = 0,
                                    std::string bytes = {});

} // namespace quillbox
