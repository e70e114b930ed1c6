#include "MountInquiry.h"

#include <cerrno>

namespace quillbox {

namespace {

    // The most killed processes that one mount may keep, since they can't end before it answers. While it keeps so
    // many, it is not asked again.
    constexpr std::size_t kMostStuckHelpers = 4;

} // namespace

MountInquiry::MountInquiry(std::string helperProgram, std::function<void(const Error&)> onSilence, Limits limits)
    : helper_(std::move(helperProgram)),
      onSilence_(std::move(onSilence)),
      limits_(limits)
{
}

void MountInquiry::beginOpening()
{
    if (MountInquiry* inquiry = Installed<MountInquiry>::current())
        inquiry->passedOver_.clear();
    continueOpening();
}

void MountInquiry::continueOpening()
{
    MountInquiry* inquiry = Installed<MountInquiry>::current();
    if (!inquiry)
        return;
    inquiry->spent_ = {};
    inquiry->router_.forget();
}

bool MountInquiry::isFreeToAsk(const std::string& path)
{
    return !router_.mountThatMayHangOn(path, LastLink::notFollowed);
}

std::optional<FileAnswer> MountInquiry::ask(const FileQuestion& question)
{
    const auto mount = router_.mountThatMayHangOn(
        question.path, question.followsLastLink() ? LastLink::followed : LastLink::notFollowed);
    if (!mount)
        return std::nullopt;
    return askMount(question, *mount);
}

FileAnswer MountInquiry::askHelper(const FileQuestion& question)
{
    constexpr std::uint64_t kNoMount = 0;
    if (helper_.countStuckOn(kNoMount) >= kMostStuckHelpers)
        return { ETIMEDOUT, 0, {} };
    const auto end = std::chrono::steady_clock::now() + limits_.opening;
    MountHelper::Outcome outcome = helper_.ask(question, kNoMount, limits_.opening, end);
    return outcome.answer ? std::move(*outcome.answer) : FileAnswer { ETIMEDOUT, 0, {} };
}

FileAnswer MountInquiry::askMount(const FileQuestion& question, const MountTable::Mount& mount)
{
    FileAnswer none { ETIMEDOUT, 0, {} };
    if (passedOver_.contains(mount.id) || spent_ >= limits_.opening)
        return none;
    if (helper_.countStuckOn(mount.id) >= kMostStuckHelpers) {
        passedOver_.insert(mount.id);
        return none;
    }
    const auto start = std::chrono::steady_clock::now();
    MountHelper::Outcome outcome =
        helper_.ask(question, mount.id, limits_.question, start + (limits_.opening - spent_));
    spent_ += std::chrono::steady_clock::now() - start;
    if (!outcome.answer) {
        passedOver_.insert(mount.id);
        tellOnce(mount, outcome.failure);
        return none;
    }
    told_.erase(mount.id);
    return std::move(*outcome.answer);
}

void MountInquiry::tellOnce(const MountTable::Mount& mount, MountHelper::Failure failure)
{
    if (!onSilence_ || !told_.insert(mount.id).second)
        return;
    if (failure == MountHelper::Failure::cannotRun)
        onSilence_({ 0, "couldn't start the program that looks at file systems which may not answer, so passed over",
                     mount.mountPoint });
    else
        onSilence_(
            { 0, "no answer, so passed over until it does: the " + mount.type + " file system at", mount.mountPoint });
}

std::optional<FileAnswer> askInTime(FileQuestion::Kind kind, const std::string& path, std::uint64_t number,
                                    std::string bytes)
{
    MountInquiry* inquiry = Installed<MountInquiry>::current();
    return inquiry ? inquiry->ask({ kind, path, number, std::move(bytes) }) : std::nullopt;
}

} // namespace quillbox
