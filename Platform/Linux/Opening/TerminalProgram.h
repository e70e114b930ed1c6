#pragma once

#include <optional>
#include <string>

namespace quillbox {

struct XdgEnvironment;

// The beginning of a command line that runs what follows it in a terminal, quoted for an entry's Exec: the user's own
// choice ($TERMINAL), the desktop's, else the first terminal program that is installed. None where there is none.
std::optional<std::string> terminalCommandPrefix(const XdgEnvironment& environment);

} // namespace quillbox
