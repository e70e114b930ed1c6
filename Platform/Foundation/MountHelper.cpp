#include "MountHelper.h"

#include "ByteFields.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace quillbox {

namespace {

    constexpr std::chrono::seconds kIdleTime { 10 };

    bool hasEnded(const FileDescriptor& process)
    {
        pollfd end { process.get(), POLLIN, 0 };
        return ::poll(&end, 1, 0) != 0;
    }

    // Starts the program with the socket as its standard input and no other descriptor of ours. Returns its process id,
    // or -1 if it can't be started.
    pid_t spawn(const std::string& program, int socket)
    {
        posix_spawn_file_actions_t actions;
        posix_spawnattr_t attributes;
        if (::posix_spawn_file_actions_init(&actions) != 0 || ::posix_spawnattr_init(&attributes) != 0)
            return -1;
        sigset_t none;
        sigset_t all;
        ::sigemptyset(&none);
        ::sigfillset(&all);
        ::posix_spawnattr_setsigmask(&attributes, &none);
        ::posix_spawnattr_setsigdefault(&attributes, &all);
        // The helper gets a session of its own, so that keys typed into our terminal don't reach it.
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
        ::posix_spawn_file_actions_adddup2(&actions, socket, STDIN_FILENO);
        ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
        // Its working directory must not keep a volume from being unmounted.
        ::posix_spawn_file_actions_addchdir_np(&actions, "/");
        std::string name = program;
        char* const arguments[] { name.data(), nullptr };
        pid_t process = -1;
        const int error = ::posix_spawn(&process, program.c_str(), &actions, &attributes, arguments, environ);
        ::posix_spawn_file_actions_destroy(&actions);
        ::posix_spawnattr_destroy(&attributes);
        return error == 0 ? process : -1;
    }

} // namespace

MountHelper::~MountHelper()
{
    socket_.close();
    reap();
}

void MountHelper::reap()
{
    std::erase_if(starters_, [](pid_t starter) { return ::waitpid(starter, nullptr, WNOHANG) != 0; });
}

std::size_t MountHelper::countStuckOn(std::uint64_t mountId)
{
    std::erase_if(stuck_, [](const Stuck& stuck) { return hasEnded(stuck.process); });
    return static_cast<std::size_t>(
        std::count_if(stuck_.begin(), stuck_.end(), [&](const Stuck& stuck) { return stuck.mountId == mountId; }));
}

bool MountHelper::start(Moment deadline)
{
    reap();
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return false;
    MessageSocket ours { FileDescriptor(ends[0]) };
    FileDescriptor theirs(ends[1]);
    const pid_t starter = spawn(program_, theirs.get());
    theirs.close();
    if (starter < 0)
        return false;
    starters_.push_back(starter);
    // The helper is the starter's child, so that nobody here has to wait for its end. It tells its process id itself.
    const std::optional<Data> greeting = ours.receive(deadline);
    if (!greeting)
        return false;
    processId_ = static_cast<pid_t>(FieldReader(*greeting).number(4));
    process_ = FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, processId_, 0)));
    socket_ = std::move(ours);
    return true;
}

void MountHelper::giveUp(std::uint64_t mountId)
{
    socket_.close();
    processId_ = -1;
    if (!process_)
        return;
    ::syscall(SYS_pidfd_send_signal, process_.get(), SIGKILL, nullptr, 0);
    stuck_.push_back({ mountId, std::exchange(process_, FileDescriptor()) });
}

MountHelper::Outcome MountHelper::ask(const FileQuestion& question, std::uint64_t mountId,
                                      std::chrono::milliseconds time, Moment end)
{
    const Data message = question.encoded();
    // The helper may just have ended because it was idle; then a new one is asked.
    for (int tries = 0; tries < 2; ++tries) {
        if (!socket_ && !start(end))
            break;
        const Moment deadline = std::min(end, std::chrono::steady_clock::now() + time);
        if (socket_.send(message, deadline)) {
            if (const std::optional<Data> reply = socket_.receive(deadline)) {
                if (std::optional<FileAnswer> answer = FileAnswer::decode(*reply))
                    return { std::move(answer), {} };
            }
        }
        const bool isSilent = std::chrono::steady_clock::now() >= deadline;
        giveUp(mountId);
        if (isSilent)
            return { {}, Failure::silent };
    }
    return { {}, Failure::cannotRun };
}

int serveFileQuestions(FileDescriptor descriptor, const std::function<FileAnswer(const FileQuestion&)>& answered)
{
    const MessageSocket socket(std::move(descriptor));
    const auto later = [] { return std::chrono::steady_clock::now() + kIdleTime; };
    FieldWriter greeting;
    greeting.number(static_cast<std::uint32_t>(::getpid()), 4);
    if (!socket.send(greeting.bytes, later()))
        return EXIT_FAILURE;
    while (const std::optional<Data> message = socket.receive(later())) {
        const std::optional<FileQuestion> question = FileQuestion::decode(*message);
        const FileAnswer answer = question ? answered(*question) : FileAnswer { EPROTO, 0, {} };
        if (!socket.send(answer.encoded(), later()))
            return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

} // namespace quillbox
