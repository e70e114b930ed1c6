#include "Unprivileged.h"

#include "Check.h"
#include "ChildProcess.h"

#include <grp.h>
#include <unistd.h>

namespace quillbox {

std::string runWithoutPrivileges(const std::function<std::string()>& work)
{
    const ChildRun run = runInChild([&] {
        constexpr uid_t kNobody = 65534;
        QB_CHECK(geteuid() != 0 || (setgroups(0, nullptr) == 0 && setgid(kNobody) == 0 && setuid(kNobody) == 0));
        return work();
    });
    return run.status == 0 ? run.report : "(child failed)";
}

} // namespace quillbox
