#pragma once

#include "Result.h"
#include "XdgEnvironment.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quillbox {

class LibrarySearchPaths;

// Starts programs for LinuxWorkspace as the desktop would: with field codes, activation over the bus, terminal programs
// and start-up notification. A started program runs in a session of its own, survives this process and gets none of its
// descriptors. Each start uses up the activation token.
class ApplicationLauncher {
public:
    // `onLateError` is called from the event loop if activating a program over the bus has failed.
    ApplicationLauncher(XdgEnvironment environment, std::function<void(const Error&)> onLateError);
    ~ApplicationLauncher();
    ApplicationLauncher(const ApplicationLauncher&) = delete;
    ApplicationLauncher& operator=(const ApplicationLauncher&) = delete;

    // `paths` are brought up to date before a program is looked for, and started programs get the session's original
    // lists. They must outlive this object. By default there are none.
    void setSearchPaths(LibrarySearchPaths* paths);
    // `token` is what the display got with the click that asks for the next start. It is valid for that start only.
    void setActivationToken(std::string token);
    // Whether a program was started since setActivationToken() that will tell the desktop, by the token, when it is
    // ready.
    bool isActivationTokenTaken() const;

    Result<void> startEntry(const std::string& entryPath);
    // Starts a program that has no desktop entry, without arguments.
    Result<void> startProgram(const std::string& path);
    // Opens a file with the user's default application for its type, or a directory with the file manager.
    Result<void> openFile(const std::string& path);
    // Opens it with the application of that desktop entry.
    Result<void> openFile(const std::string& path, const std::string& entryPath);
    // Returns the desktop entries of the applications that can open it, the usual one first.
    Result<std::vector<std::string>> entriesFor(const std::string& path) const;
    // Returns the activation token for a request that starts no program, and uses it up.
    std::string takeActivationToken();

private:
    struct Launches;
    // Starts that are under way share it, since they may end after this object.
    std::shared_ptr<Launches> launches_;
};

} // namespace quillbox
