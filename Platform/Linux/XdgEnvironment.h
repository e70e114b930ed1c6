#pragma once

#include "Result.h"

#include <string>
#include <vector>

namespace quillbox {

class LibrarySearchPaths;

// What the session tells a program about where desktop entries are and which of them to show. The program takes that of
// its process once, at its start; tests make their own.
struct XdgEnvironment {
    // $XDG_CONFIG_HOME, or $HOME/.config if that is not set.
    std::string configHome;
    // $XDG_DATA_HOME, or $HOME/.local/share if that is not set.
    std::string dataHome;
    // $XDG_DATA_DIRS, most important first.
    std::vector<std::string> dataDirectories;
    // The one data directory whose entries belong to the system. The entries in others were added on this machine.
    std::string systemDataDirectory = "/usr/share";
    // The names in $XDG_CURRENT_DESKTOP, the most specific one first.
    std::vector<std::string> desktops;
    // Locale names as in the brackets of desktop entries' keys, best first ("de_DE", "de").
    std::vector<std::string> languages;
    // The directories of $PATH.
    std::vector<std::string> programDirectories;
    // $TERMINAL: the terminal program that the user prefers; empty for none.
    std::string terminal;
    // $XDG_RUNTIME_DIR, which exists while the user is logged in; empty if there is none.
    std::string runtimeDirectory;

    static XdgEnvironment ofProcess(const LibrarySearchPaths& searchPaths);

    // Returns a text that is the same for all environments that show the same entries.
    std::string fingerprint() const;
    // The directory in which the keeper of application bundles writes.
    std::string bundlesDirectory() const { return dataHome + "/quillbox/bundles"; }
    // Returns the absolute path of a program that a desktop entry names in TryExec or Exec; empty if it can't be run.
    std::string findProgram(const std::string& name) const;
    // Does the same, but fails if the program was not found and a directory on the way couldn't be looked at.
    Result<std::string> lookForProgram(const std::string& name) const;
};

} // namespace quillbox
