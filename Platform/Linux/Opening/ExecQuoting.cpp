#include "ExecQuoting.h"

#include "GLibPointer.h"

namespace quillbox {

std::string programForExec(const std::string& path)
{
    std::string quoted(GLibText(g_shell_quote(path.c_str())).get());
    if (quoted.find('%') == std::string::npos)
        return quoted;
    // GIO looks for the first word before it undoes the doubling of percent signs, so the first word must not have one;
    // an argument may.
    std::string command = "sh -c 'exec \"$0\" \"$@\"' ";
    for (const char c : quoted) {
        command += c;
        if (c == '%')
            command += c;
    }
    return command;
}

} // namespace quillbox
