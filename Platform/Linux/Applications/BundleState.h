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

// Records everything that the application bundles were made from, so that a later look can tell whether anything has
// changed: the environment, the paths that were read, and the programs that entries depend on. It also lists the
// resulting bundles. It is kept on disk beside the bundles and is valid until the system is restarted: after a crash
// the bundles are checked again. A state made while something could not be read is kept in memory only, until that can
// be opened.
class BundleState {
public:
    explicit BundleState(const XdgEnvironment& environment);

    // Must be called before `path` is read, so that a change after that is noticed.
    void watch(const std::string& path);
    void watchProgram(const std::string& name);
    // Like watch(), for a path that the keeper itself has just written.
    void watchOwn(const std::string& path);
    // For a path that could not be read. The state is outdated as soon as it can be.
    void watchUnread(const std::string& path);

    bool isCurrent() const;

    std::vector<InstalledBundle> bundles;

    // Returns nothing if there is no such file, or if it is damaged or belongs to another environment or another start
    // of the system.
    static std::optional<BundleState> load(const std::string& file, const XdgEnvironment& environment);
    // Writes the file, unless it has this content already. Must not be called for a state with unread paths.
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
