#pragma once

#include <functional>
#include <string>

namespace quillbox {

struct ChildRun {
    // What the work returned; empty where the process did not get that far.
    std::string report;
    // How the process ended, as waitpid tells it.
    int status = 0;
};

// Runs `work` in a child process, which ends without running the destructors of the test.
ChildRun runInChild(const std::function<std::string()>& work);

} // namespace quillbox
