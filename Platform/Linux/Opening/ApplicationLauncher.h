#pragma once

#include "Result.h"
#include "XdgEnvironment.h"

#include <functional>
#include <memory>
#include <string>

namespace quillbox {

class LibrarySearchPaths;

// Starts programs for LinuxWorkspace as the desktop would: field codes, activation over the bus, terminal programs,
// start-up notification. What is started lives on when this process ends, in a session of its own, and gets none of
// its descriptors. Each call's activation token is used up by it.
class ApplicationLauncher {
public:
    // `onLateError` is told, from the event loop, of programs whose activation over the bus failed.
    ApplicationLauncher(XdgEnvironment environment, std::function<void(const Error&)> onLateError);
    ~ApplicationLauncher();
    ApplicationLauncher(const ApplicationLauncher&) = delete;
    ApplicationLauncher& operator=(const ApplicationLauncher&) = delete;

    // `paths` are brought up to date before a program is looked for, and what is started gets the session's own. They
    // must outlive this object; there are none by default.
    void setSearchPaths(LibrarySearchPaths* paths);
    // `token` is what the display got with the click that asks for the next start. It serves that start alone.
    void setActivationToken(std::string token);
    // Whether a program was started since then that tells the desktop, by the token, when it has started.
    bool isActivationTokenTaken() const;

    Result<void> startEntry(const std::string& entryPath);
    // Starts a program that has no entry, without arguments.
    Result<void> startProgram(const std::string& path);
    // Opens a file with the user's default application for its type, a directory with the file manager.
    Result<void> openFile(const std::string& path);

private:
    struct Launches;
    // Starts that are under way share it, since they may end after this object.
    std::shared_ptr<Launches> launches_;
};

} // namespace quillbox
