#include "NSWorkspace.h"

#include "FileManager.h"
#include "Installed.h"

namespace quillbox {

namespace {

    class NoWorkspace final : public NSWorkspace {
    public:
        NSImage icon(std::string_view, EntryKind) override { return {}; }
        std::optional<NSImage> systemImage(std::string_view) override { return std::nullopt; }
        bool open(const URL&) override { return false; }
        bool launchApplication(const std::string&) override { return false; }
        Result<std::vector<Application>> applications(const URL&) override { return std::vector<Application>(); }
        bool open(const URL&, const Application&) override { return false; }
        bool activateFileViewer(const URL&) override { return false; }
        std::string fileBehind(const std::string& path) override { return path; }
    };

} // namespace

bool NSWorkspace::isFilePackage(const std::string& atPath)
{
    return isPackageName(path::lastPathComponent(atPath)) && FileManager::defaultManager().isDirectory(atPath);
}

NSWorkspace& NSWorkspace::sharedWorkspace()
{
    static NoWorkspace none;
    NSWorkspace* const installed = Installed<NSWorkspace>::current();
    return installed ? *installed : none;
}

} // namespace quillbox
