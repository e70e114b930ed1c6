#pragma once

#include "Result.h"

#include <string>
#include <vector>

namespace quillbox {

class LibrarySearchPaths;

// What the session tells a program about where desktop entries lie and which of them to show. The program takes
// the process's own once, at its start; tests make theirs.
struct XdgEnvironment {
    // $XDG_CONFIG_HOME, $HOME/.config where it is not set.
    std::string configHome;
    // $XDG_DATA_HOME, $HOME/.local/share where it is not set.
    std::string dataHome;
    // $XDG_DATA_DIRS, most important first.
    std::vector<std::string> dataDirectories;
    // The one data directory whose entries come with the system. Those of the others were added on this machine.
    std::string systemDataDirectory = "/usr/share";
    // The names in $XDG_CURRENT_DESKTOP, the most specific one first.
    std::vector<std::string> desktops;
    // Locale names as entries' keys have them in brackets, best first ("de_DE", "de").
    std::vector<std::string> languages;
    // The directories of $PATH.
    std::vector<std::string> programDirectories;
    // $TERMINAL: the terminal program that the user prefers; empty for none.
    std::string terminal;
    // $XDG_RUNTIME_DIR, which lasts as long as the person is logged in; empty where there is none.
    std::string runtimeDirectory;

    static XdgEnvironment ofProcess(const LibrarySearchPaths& searchPaths);

    // A text that is the same for environments that show the same entries.
    std::string fingerprint() const;
    // Where the keeper of application bundles writes.
    std::string bundlesDirectory() const { return dataHome + "/quillbox/bundles"; }
    // The absolute path of a program named as in an entry's TryExec or Exec; empty where it can't be run.
    std::string findProgram(const std::string& name) const;
    // The same, but an error where the program was not found and a directory on the way couldn't be looked at.
    Result<std::string> lookForProgram(const std::string& name) const;
};

} // namespace quillbox
