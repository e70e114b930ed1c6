#pragma once

#include "FileQuestion.h"
#include "MessageSocket.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace quillbox {

// The process that asks mounts that may hang, as MountInquiry sees it. It is started at the first question, serves one
// after another, and ends by itself when it is idle or its socket closes: nothing here waits for it or for its end.
// One that does not answer in time is killed and forgotten; the kernel may keep it until its file system answers, so
// those are counted, and the next question starts a new one.
class MountHelper {
public:
    using Moment = MessageSocket::Moment;
    enum class Failure { silent, cannotRun };

    // `program` is the path of the helper's program.
    explicit MountHelper(std::string program) : program_(std::move(program)) { }
    MountHelper(const MountHelper&) = delete;
    MountHelper& operator=(const MountHelper&) = delete;
    ~MountHelper();

    struct Outcome {
        std::optional<FileAnswer> answer;
        // Without an answer: what it failed of.
        Failure failure {};
    };
    // The answer, or why there is none. It may take `time` once a helper runs, and never longer than to `end`.
    // `mountId` is whom the question is for.
    Outcome ask(const FileQuestion& question, std::uint64_t mountId, std::chrono::milliseconds time, Moment end);

    // How many processes wait for that mount still, though they were killed.
    std::size_t countStuckOn(std::uint64_t mountId);

    // The running process, or -1: for tests.
    pid_t processId() const { return processId_; }

private:
    struct Stuck {
        std::uint64_t mountId;
        FileDescriptor process;
    };

    bool start(Moment deadline);
    void giveUp(std::uint64_t mountId);
    void reap();

    std::string program_;
    MessageSocket socket_;
    // A descriptor of the process: its number may mean another one soon.
    FileDescriptor process_;
    pid_t processId_ = -1;
    std::vector<Stuck> stuck_;
    // Those that start the helper and end at once.
    std::vector<pid_t> starters_;
};

// The helper's own side: tells who it is, then answers what comes through the socket until the other end closes or
// nothing has come for a while. The exit code of its program.
int serveFileQuestions(FileDescriptor socket, const std::function<FileAnswer(const FileQuestion&)>& answered);

} // namespace quillbox
