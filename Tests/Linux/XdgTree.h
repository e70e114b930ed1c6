#pragma once

#include "ApplicationBundles.h"
#include "TemporaryDirectory.h"
#include "XdgEnvironment.h"

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

    // For the next keeper made.
    XdgEnvironment environment;

    // "System/Applications/Foo.app" and so on, in the order of names.
    std::vector<std::string> bundles() const;
    // The same with inode and time of each file in them.
    std::vector<std::string> fingerprint() const;
    // A text of a bundle's Info.plist; "(none)" where it has none.
    std::string info(std::string_view bundle, std::string_view key) const;
    std::string bundlePath(std::string_view bundle) const;

private:
    TemporaryDirectory root_;
};

// The errors that a keeper was made to report into it.
struct ErrorLog {
    std::vector<Error> errors;
    std::function<void(const Error&)> callback()
    {
        return [this](const Error& error) { errors.push_back(error); };
    }
};

} // namespace quillbox
