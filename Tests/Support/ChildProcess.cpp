#include "ChildProcess.h"

#include "Check.h"

#include <array>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillbox {

ChildRun runInChild(const std::function<std::string()>& work)
{
    std::array<int, 2> ends {};
    QB_CHECK(pipe2(ends.data(), O_CLOEXEC) == 0);
    const pid_t child = fork();
    QB_CHECK(child >= 0);
    if (child == 0) {
        const std::string report = work();
        QB_CHECK(write(ends[1], report.data(), report.size()) == static_cast<ssize_t>(report.size()));
        _exit(0);
    }
    close(ends[1]);
    ChildRun run;
    std::array<char, 4096> buffer {};
    for (ssize_t count = 0; (count = read(ends[0], buffer.data(), buffer.size())) > 0;)
        run.report.append(buffer.data(), static_cast<std::size_t>(count));
    close(ends[0]);
    QB_CHECK(waitpid(child, &run.status, 0) == child);
    return run;
}

} // namespace quillbox
