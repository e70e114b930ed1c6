#pragma once

#include <optional>
#include <string>

namespace quillbox {

// What the program was asked for when it was started. Read before the toolkit is, which needs a display.
struct CommandLine {
    enum class Request { run, openMenu, startAtLogin, dontStartAtLogin, help, version };

    Request request = Request::run;
    // What was not understood, for whoever typed it; empty where all was.
    std::string problem;

    // The toolkit's own options are left to it.
    static CommandLine read(int argc, const char* const* argv);

    // Answers what needs neither a display nor a running program: the exit code then, none otherwise.
    std::optional<int> answer() const;
};

} // namespace quillbox
