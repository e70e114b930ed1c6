#include "FaultInjector.h"

#include "Check.h"
#include "ChildProcess.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace quillbox {

namespace {

    // Those that a machine's architecture does not have are not in its headers.
    constexpr int kFileCalls[] = {
#ifdef SYS_open
        SYS_open,       SYS_stat,      SYS_lstat,     SYS_readlink, SYS_rename,     SYS_unlink,    SYS_link,
        SYS_mkdir,      SYS_rmdir,     SYS_chmod,     SYS_symlink,  SYS_access,     SYS_getdents,
#endif
        SYS_openat,     SYS_read,      SYS_pread64,   SYS_write,    SYS_newfstatat, SYS_fstat,     SYS_statx,
        SYS_readlinkat, SYS_renameat2, SYS_unlinkat,  SYS_linkat,   SYS_mkdirat,    SYS_fchmod,    SYS_fchmodat,
        SYS_symlinkat,  SYS_fsync,     SYS_fdatasync, SYS_flock,    SYS_getdents64, SYS_faccessat, SYS_utimensat,
        SYS_ftruncate,  SYS_fcntl,     SYS_lseek,     SYS_close,
    };

    // From now on the kernel asks at the returned descriptor before this thread makes any of those calls.
    int listenToThisThread()
    {
        std::vector<sock_filter> program;
        program.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)));
        for (const int call : kFileCalls) {
            program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call), 0, 1));
            program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF));
        }
        program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
        const sock_fprog filter { static_cast<unsigned short>(program.size()), program.data() };
        QB_CHECK(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0);
        const long listener = syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &filter);
        QB_CHECK(listener >= 0);
        return static_cast<int>(listener);
    }

    // Answers the kernel until the listened thread has ended. Gives how many calls there were.
    int answerCalls(int listener, const std::optional<Fault>& fault)
    {
        int count = 0;
        for (;;) {
            pollfd waiting { listener, POLLIN, 0 };
            if (poll(&waiting, 1, -1) < 0 && errno == EINTR)
                continue;
            if ((waiting.revents & POLLIN) == 0)
                return count;
            seccomp_notif call {};
            if (ioctl(listener, SECCOMP_IOCTL_NOTIF_RECV, &call) != 0)
                continue;
            const bool isCounted = !fault || !fault->number || *fault->number == call.data.nr;
            count += isCounted ? 1 : 0;
            const bool isFaulty = fault && isCounted && fault->call == count;
            seccomp_notif_resp answer {};
            answer.id = call.id;
            answer.flags = SECCOMP_USER_NOTIF_FLAG_CONTINUE;
            if (isFaulty && !fault->error)
                std::raise(SIGKILL);
            if (isFaulty && call.data.nr != SYS_close) {
                answer.flags = 0;
                answer.error = -*fault->error;
            }
            ioctl(listener, SECCOMP_IOCTL_NOTIF_SEND, &answer);
        }
    }

    // In the child: the work in a thread of its own, the answers in this one. Gives the number of calls, a blank and
    // what the work returned.
    std::string workUnderFault(const std::optional<Fault>& fault, const std::function<std::string()>& work)
    {
        std::atomic<int> listener = -1;
        std::string report;
        std::thread worker([&] {
            listener.store(listenToThisThread());
            listener.notify_one();
            report = work();
        });
        listener.wait(-1);
        const int callCount = answerCalls(listener.load(), fault);
        worker.join();
        return std::to_string(callCount) + " " + report;
    }

} // namespace

FaultRun runWithFault(const std::optional<Fault>& fault, const std::function<std::string()>& work)
{
    const ChildRun child = runInChild([&] { return workUnderFault(fault, work); });
    if (child.status == SIGKILL)
        return { {}, 0, true };
    QB_CHECK(child.status == 0);
    const std::size_t blank = child.report.find(' ');
    return { child.report.substr(blank + 1), std::stoi(child.report), false };
}

} // namespace quillbox
