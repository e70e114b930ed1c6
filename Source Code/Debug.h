#pragma once

#include "AttributedString.h"
#include "WeakPtr.h"

#include <deque>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

class NSMenuItemPlus;

// What the program keeps for those who look into it: the error log that the preferences window can show,
// and the list of built menu items. Main thread only; nothing of it is saved.
class Debug {
public:
    Debug() = delete;

    static constexpr std::size_t kMaximumLogEntries = 20;

    // Adds an entry and drops the oldest past the 20 newest. `function` is the reporter's name with its
    // argument labels; of `file` only the last component is kept.
    static void addErrorLogEntry(std::string_view typeName, std::string_view function, std::string_view file, int line,
                                 bool isWarning, std::string_view message);

    // Oldest first.
    static std::deque<AttributedString>& errorLog();

    // Every item built for a path, until its menu is gone.
    static std::vector<WeakPtr<NSMenuItemPlus>>& dynamicMenuItems();
    // Drops the entries whose item is gone, keeping the order of the others.
    static void pruneDynamicMenuItems();

    // Prints the built items for whoever works on the program.
    static void dumpDynamicMenuItems(std::ostream& out);
    static void dumpDynamicMenuItems();
};

} // namespace quillbox
