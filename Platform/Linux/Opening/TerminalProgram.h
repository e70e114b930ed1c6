#pragma once

#include <optional>
#include <string>

namespace quillbox {

struct XdgEnvironment;

// Returns the beginning of a command line that runs what follows it in a terminal, quoted for a desktop entry's Exec.
// The terminal is the user's own choice ($TERMINAL), otherwise the desktop's, otherwise the first known one that is
// installed. Nothing is returned if there is none.
std::optional<std::string> terminalCommandPrefix(const XdgEnvironment& environment);

} // namespace quillbox
