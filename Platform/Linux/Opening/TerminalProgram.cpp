#include "TerminalProgram.h"

#include "ExecQuoting.h"
#include "XdgEnvironment.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace quillbox {

namespace {

    struct TerminalProgram {
        std::string_view name;
        // The option that the program needs before the command; empty if it needs none.
        std::string_view option;
    };

    // The first two start what the desktop and the system's administrator have chosen. All are tried in this order.
    constexpr TerminalProgram kTable[] = {
        { "xdg-terminal-exec", "" },
        { "x-terminal-emulator", "-e" },
        { "gnome-terminal", "--" },
        { "konsole", "-e" },
        { "xfce4-terminal", "-x" },
        { "mate-terminal", "-x" },
        { "qterminal", "-e" },
        { "lxterminal", "-e" },
        { "tilix", "-e" },
        { "terminator", "-x" },
        { "kitty", "" },
        { "alacritty", "-e" },
        { "foot", "" },
        { "urxvt", "-e" },
        { "st", "-e" },
        { "xterm", "-e" },
    };

    std::string prefix(const std::string& program, std::string_view option)
    {
        std::string text = programForExec(program) + ' ';
        if (!option.empty())
            text.append(option).append(" ");
        return text;
    }

} // namespace

std::optional<std::string> terminalCommandPrefix(const XdgEnvironment& environment)
{
    if (const std::string program = environment.findProgram(environment.terminal); !program.empty()) {
        const std::string_view name = std::string_view(program).substr(program.rfind('/') + 1);
        const auto* row = std::find_if(std::begin(kTable), std::end(kTable),
                                       [&](const TerminalProgram& candidate) { return candidate.name == name; });
        return prefix(program, row == std::end(kTable) ? "-e" : row->option);
    }
    for (const TerminalProgram& terminal : kTable) {
        if (const std::string program = environment.findProgram(std::string(terminal.name)); !program.empty())
            return prefix(program, terminal.option);
    }
    return std::nullopt;
}

} // namespace quillbox
