#pragma once

#include <functional>
#include <optional>
#include <string>

namespace quillbox {

// What is done to one of a process's system calls that name or use a file, counted from 1. Calls that only hand back a
// descriptor (close) can't be refused, only end the process.
struct Fault {
    int call = 0;
    // The error that the call gives without being carried out; with none, the process is killed in its place.
    std::optional<int> error;
    // With one of the system's numbers (SYS_...), only such calls are counted.
    std::optional<int> number = std::nullopt;
};

struct FaultRun {
    // What the work returned; empty where it was killed.
    std::string report;
    // How many such calls it made.
    int callCount = 0;
    bool wasKilled = false;
};

// Runs `work` in a child process, with that fault where one is given. The calls are caught by the kernel (a seccomp
// listener), so those that libraries make within count as well. Stops the test program where the system permits no such
// listener.
FaultRun runWithFault(const std::optional<Fault>& fault, const std::function<std::string()>& work);

} // namespace quillbox
