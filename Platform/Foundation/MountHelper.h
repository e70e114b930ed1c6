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

// The helper process that looks at mounts that may hang, as MountInquiry sees it. It is started at the first question,
// answers one question after another, and ends by itself when it has been idle for a while or its socket closes:
// nothing here waits for it or for its end. A process that does not answer in time is killed and forgotten. The kernel
// may keep such a process until its file system answers, so they are counted; the next question starts a new one.
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
        // Why there is no answer; it means nothing if there is one.
        Failure failure {};
    };
    // Asks a question about the mount with the id `mountId`. The answer may take `time` once a helper runs, and never
    // longer than to `end`.
    Outcome ask(const FileQuestion& question, std::uint64_t mountId, std::chrono::milliseconds time, Moment end);

    // Returns how many processes still wait for that mount, though they were killed.
    std::size_t countStuckOn(std::uint64_t mountId);

    // Returns the id of the running process, or -1. It is there for tests.
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
    // A descriptor of the process is kept, because its id may soon be that of another one.
    FileDescriptor process_;
    pid_t processId_ = -1;
    std::vector<Stuck> stuck_;
    // The short-lived processes that start the helper.
    std::vector<pid_t> starters_;
};

// The helper's own side: sends its process id, then answers questions from the socket with `answered` until the other
// end closes or none has come for a while. Returns the exit code of its program.
int serveFileQuestions(FileDescriptor socket, const std::function<FileAnswer(const FileQuestion&)>& answered);

} // namespace quillbox
