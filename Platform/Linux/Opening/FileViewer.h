#pragma once

#include <functional>
#include <memory>
#include <string>

namespace quillbox {

// Asks the desktop's file manager over the session bus (org.freedesktop.FileManager1) to show files. Nothing waits for
// its answer. LinuxWorkspace owns one.
class FileViewer {
public:
    // Shows the file selected in its directory. `activationToken` gives the file manager the right to take the focus.
    // `otherwise` is called, now or later, if no file manager on the bus does it in time; not after the end of this
    // object.
    void show(const std::string& path, const std::string& activationToken, std::function<void()> otherwise);

private:
    // Requests that are under way know by it whether this object still exists.
    std::shared_ptr<const char> alive_ = std::make_shared<const char>();
};

} // namespace quillbox
