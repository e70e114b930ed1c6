#include "ExecQuoting.h"

#include "GLibPointer.h"

namespace quillbox {

std::string programForExec(const std::string& path)
{
    std::string quoted(GLibText(g_shell_quote(path.c_str())).get());
    if (quoted.find('%') == std::string::npos)
        return quoted;
    // GIO looks for the first word before it undoes the doubling that a percent sign needs, so that word can't
    // have one; an argument can.
    std::string command = "sh -c 'exec \"$0\" \"$@\"' ";
    for (const char c : quoted) {
        command += c;
        if (c == '%')
            command += c;
    }
    return command;
}

} // namespace quillbox
