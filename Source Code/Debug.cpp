#include "Debug.h"

#include "NSFont.h"
#include "NSMenuItemPlus.h"
#include "URL.h"

#include <iostream>

namespace quillbox {

void Debug::addErrorLogEntry(std::string_view typeName, std::string_view function, std::string_view file, int line,
                             bool isWarning, std::string_view message)
{
    AttributedString entry(isWarning ? "\u26A0\uFE0F " : "\U0001F6D1 ");
    entry.append(std::string(typeName) + " . " + std::string(function), { NSFont::boldSystemFont(0), {} });
    entry.append("\n\n" + std::string(path::lastPathComponent(file)) + ":" + std::to_string(line) + "\n\n"
                 + std::string(message));

    auto& log = errorLog();
    log.push_back(std::move(entry));
    while (log.size() > kMaximumLogEntries)
        log.pop_front();
}

std::deque<AttributedString>& Debug::errorLog()
{
    static std::deque<AttributedString> log;
    return log;
}

std::vector<WeakPtr<NSMenuItemPlus>>& Debug::dynamicMenuItems()
{
    static std::vector<WeakPtr<NSMenuItemPlus>> items;
    return items;
}

void Debug::pruneDynamicMenuItems()
{
    auto& items = dynamicMenuItems();
    std::erase_if(items, [](const WeakPtr<NSMenuItemPlus>& item) { return item.value.expired(); });
    // The memory for one very large directory should not be held after its menu is closed.
    items.shrink_to_fit();
}

void Debug::dumpDynamicMenuItems(std::ostream& out)
{
    out << "contents of Debug.dynamicMenuItems[] :\n";
    const auto& items = dynamicMenuItems();
    if (items.empty()) {
        out << "  (array is empty)\n";
        return;
    }
    std::size_t aliveCount = 0;
    for (const WeakPtr<NSMenuItemPlus>& entry : items) {
        if (const auto item = entry.value.lock()) {
            out << "  \"" << item->title() << "\"\n";
            ++aliveCount;
        }
    }
    out << items.size() << " elements, " << aliveCount << " are non-nil\n\n";
}

void Debug::dumpDynamicMenuItems()
{
    dumpDynamicMenuItems(std::cout);
    std::cout.flush();
}

} // namespace quillbox
