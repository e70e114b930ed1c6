#pragma once

#include "Result.h"
#include "XdgEnvironment.h"

#include <string>
#include <vector>

namespace quillbox {

// Whether the desktop starts the program when the person logs in, as the desktop itself sees it: by the program's entry
// in the autostart directories. The person's directory goes before those of the system, and settings programs write
// there too, so what is found in an entry is kept. Nothing is kept from one question to the next.
class AutostartEntry {
public:
    // Where entries are looked for, the person's directory first: "autostart" in each.
    struct Places {
        std::vector<std::string> configurationDirectories;

        static Places ofProcess();
    };

    // `identifier` names the entry's file; `program` is the absolute path of what an entry of our own starts.
    AutostartEntry(XdgEnvironment environment, Places places, std::string identifier, std::string program);

    // An error where an entry is there but can't be read.
    Result<bool> isOn() const;
    // Changes the person's directory only, and only where it makes a difference. An error says what was refused, or why
    // the desktop does not start the program all the same.
    Result<void> setOn(bool wanted) const;

private:
    std::string pathIn(const std::string& directory) const;
    Result<bool> isEffective(const std::string& path, const std::string& text) const;
    std::string ownEntry() const;
    std::string changed(const std::string& text, bool wanted) const;
    bool isOurs(const std::string& text) const;
    std::string command() const;

    XdgEnvironment environment_;
    Places places_;
    std::string identifier_;
    std::string program_;
};

} // namespace quillbox
