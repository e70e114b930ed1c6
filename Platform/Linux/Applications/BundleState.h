#pragma once

#include "FileStamp.h"
#include "InstalledBundles.h"
#include "Result.h"
#include "XdgEnvironment.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quillbox {

// Everything that the application bundles were made from, as it was then, so that a later look can tell whether
// anything has changed: the environment, paths and the programs that entries depend on; and the bundles that came of
// it. It is kept on disk beside the bundles and holds for one run of the system only: after a crash the bundles are
// looked at again. One made while something could not be read holds in memory only, until that can be opened.
class BundleState {
public:
    explicit BundleState(const XdgEnvironment& environment);

    // To be called before `path` is read: what changes afterwards is seen at the next look.
    void watch(const std::string& path);
    void watchProgram(const std::string& name);
    // Like watch(), for what the keeper itself has just written.
    void watchOwn(const std::string& path);
    // For what could not be read: that it can is a change.
    void watchUnread(const std::string& path);

    bool isCurrent() const;

    std::vector<InstalledBundle> bundles;

    // None where there is no such file, or it is damaged or of another environment or run of the system.
    static std::optional<BundleState> load(const std::string& file, const XdgEnvironment& environment);
    // Writes nothing where the file has that content already. Only for one that has read everything.
    Result<void> save(const std::string& file) const;

private:
    struct WatchedPath {
        std::string path;
        FileStamp stamp;
    };
    enum class Presence { absent, present, unknown };

    Presence presence(const std::string& program) const;
    std::string serialized() const;

    XdgEnvironment environment_;
    std::vector<WatchedPath> paths_;
    std::map<std::string, Presence> programs_;
    std::vector<std::string> unread_;
};

} // namespace quillbox
