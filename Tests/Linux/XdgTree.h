#pragma once

#include "ApplicationBundles.h"
#include "TemporaryDirectory.h"
#include "XdgEnvironment.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

// A home and data directories of a test's own, with the desktop entries that it writes into them.
class XdgTree {
public:
    XdgTree();

    const std::string& path() const { return root_.path(); }
    std::string path(std::string_view name) const { return root_.path(name); }

    // `dataDirectory` is "user", "local", "system" or "flatpak"; `name` lies in its applications directory.
    std::string writeEntry(std::string_view dataDirectory, std::string_view name, std::string_view text) const;
    // An application's entry with that Name and nothing special, then `more` lines.
    std::string writeApplication(std::string_view dataDirectory, std::string_view name, std::string_view title,
                                 std::string_view more = {}) const;
    void removeEntry(std::string_view dataDirectory, std::string_view name) const;
    // A program in the search path.
    std::string writeProgram(std::string_view name, std::string_view script = "exit 0\n") const;
    const TemporaryDirectory& files() const { return root_; }

    // Puts the time of everything written so far into the past, as that of real entries is.
    void settle() const;

    // The keeper of the bundles, made of the environment as it is when this is first called. What it tells is in
    // `errors`.
    ApplicationBundles& keeper();
    void update() { keeper().bringUpToDate(); }
    // The next keeper is a new one, as after a restart of the program.
    void restart() { keeper_.reset(); }

    XdgEnvironment environment;
    std::vector<Error> errors;

    // "System/Applications/Foo.app" and so on, in the order of names.
    std::vector<std::string> bundles() const;
    // A text of a bundle's Info.plist; "(none)" where it has none.
    std::string info(std::string_view bundle, std::string_view key) const;
    std::string bundlePath(std::string_view bundle) const;
    // The bundle of that title among the system's applications.
    static std::string app(std::string_view title) { return "System/Applications/" + std::string(title) + ".app"; }

private:
    TemporaryDirectory root_;
    std::optional<ApplicationBundles> keeper_;
};

} // namespace quillbox
