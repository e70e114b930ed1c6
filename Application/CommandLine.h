#pragma once

#include <optional>
#include <string>

namespace quillbox {

// What the program was asked to do when it was started. It is read before the toolkit starts, which needs a display.
struct CommandLine {
    enum class Request { run, openMenu, startAtLogin, dontStartAtLogin, help, version };

    Request request = Request::run;
    // A message about what was not understood; empty if everything was.
    std::string problem;

    // Reads the arguments. The toolkit's own options are left to the toolkit.
    static CommandLine read(int argc, const char* const* argv);

    // Answers a request that needs neither a display nor a running program, and returns the exit code; nothing for
    // other requests.
    std::optional<int> answer() const;
};

} // namespace quillbox
