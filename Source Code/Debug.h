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

// What the program keeps for people who look into it: the error log that the preferences window can show, and the list
// of built menu items. Main thread only; none of it is saved.
class Debug {
public:
    Debug() = delete;

    static constexpr std::size_t kMaximumLogEntries = 20;

    // Adds an entry, and drops the oldest one if there are more than 20. `function` is the reporting function's name
    // with its argument labels; only the last component of `file` is kept.
    static void addErrorLogEntry(std::string_view typeName, std::string_view function, std::string_view file, int line,
                                 bool isWarning, std::string_view message);

    // The entries, oldest first.
    static std::deque<AttributedString>& errorLog();

    // Every item that was built for a path, until its menu is gone.
    static std::vector<WeakPtr<NSMenuItemPlus>>& dynamicMenuItems();
    // Drops the references whose item is gone; the others keep their order.
    static void pruneDynamicMenuItems();

    // Prints the built items for developers.
    static void dumpDynamicMenuItems(std::ostream& out);
    static void dumpDynamicMenuItems();
};

} // namespace quillbox
