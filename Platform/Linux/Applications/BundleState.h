#pragma once

#include "FileStamp.h"
#include "Result.h"
#include "XdgEnvironment.h"

#include <optional>
#include <string>
#include <vector>

namespace quillbox {

// An application that has a bundle: the bundle's path and what its desktop entry said when it was made.
struct InstalledApplication {
    std::string path;
    std::string desktopId;
    std::string entryPath;
    // The first word of Exec; empty where the entry has none.
    std::string program;
    std::string title;
};

// Everything that the application bundles were made from, as it was then, so that a later look can tell whether
// anything has changed: the environment, paths and the programs that entries depend on; and the applications that came
// of it. It is kept on disk beside the bundles and holds for one run of the system only: after a crash the bundles are
// looked at again.
class BundleState {
public:
    explicit BundleState(const XdgEnvironment& environment);

    // To be called before `path` is read: what changes afterwards is seen at the next look.
    void watch(const std::string& path);
    void watchProgram(const std::string& name);
    // Like watch(), for what the keeper itself has just written.
    void watchOwn(const std::string& path);

    bool isCurrent() const;

    std::vector<InstalledApplication> applications;

    // None where there is no such file, or it is damaged or of another environment or run of the system.
    static std::optional<BundleState> load(const std::string& file, const XdgEnvironment& environment);
    // Writes nothing where the file has that content already.
    Result<void> save(const std::string& file) const;

private:
    struct WatchedPath {
        std::string path;
        FileStamp stamp;
    };
    struct WatchedProgram {
        std::string name;
        bool isFound;
    };

    std::string serialized() const;

    XdgEnvironment environment_;
    std::vector<WatchedPath> paths_;
    std::vector<WatchedProgram> programs_;
};

} // namespace quillbox
