#include "Unprivileged.h"

#include "Check.h"

#include <array>
#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillbox {

namespace {

    constexpr uid_t kNobody = 65534;

    void dropPrivileges()
    {
        if (geteuid() != 0)
            return;
        QB_CHECK(setgroups(0, nullptr) == 0);
        QB_CHECK(setgid(kNobody) == 0);
        QB_CHECK(setuid(kNobody) == 0);
    }

} // namespace

std::string runWithoutPrivileges(const std::function<std::string()>& work)
{
    std::array<int, 2> ends {};
    QB_CHECK(pipe(ends.data()) == 0);
    const pid_t child = fork();
    QB_CHECK(child >= 0);
    if (child == 0) {
        close(ends[0]);
        dropPrivileges();
        const std::string text = work();
        std::size_t written = 0;
        while (written < text.size()) {
            const ssize_t count = write(ends[1], text.data() + written, text.size() - written);
            QB_CHECK(count > 0);
            written += static_cast<std::size_t>(count);
        }
        _exit(0);
    }
    close(ends[1]);
    std::string text;
    std::array<char, 4096> buffer {};
    for (ssize_t count = 0; (count = read(ends[0], buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? text : "(child failed)";
}

} // namespace quillbox
