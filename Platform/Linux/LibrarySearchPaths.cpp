#include "LibrarySearchPaths.h"

#include "PathRoute.h"
#include "PathStatus.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <string_view>

namespace quillbox {

namespace {

    constexpr const char* kProgramPath = "PATH";

    // The variables, and the standard's values for those that are not set. There is none for $PATH, which stays unset.
    constexpr std::pair<const char*, const char*> kLists[] = {
        { kProgramPath, "" },
        { "XDG_DATA_DIRS", "/usr/local/share:/usr/share" },
        { "XDG_CONFIG_DIRS", "/etc/xdg" },
    };

    std::vector<std::string> split(std::string_view list)
    {
        std::vector<std::string> parts;
        while (!list.empty()) {
            const std::size_t colon = std::min(list.find(':'), list.size());
            if (colon > 0)
                parts.emplace_back(list.substr(0, colon));
            list.remove_prefix(std::min(colon + 1, list.size()));
        }
        return parts;
    }

    bool mayHang(const std::string& directory)
    {
        return mountThatMayHangOn(directory, LastLink::followed).has_value();
    }

    // Sets the variable to the directories that `isKept` accepts. It is not changed if there are none, since an empty
    // list would stand for the standard's value.
    void setList(const std::string& name, const std::string& value,
                 const std::function<bool(const std::string&)>& isKept)
    {
        std::string kept;
        for (const std::string& part : split(value)) {
            if (isKept(part))
                kept += (kept.empty() ? "" : ":") + part;
        }
        const char* present = std::getenv(name.c_str());
        if (!kept.empty() && (!present || kept != present))
            ::setenv(name.c_str(), kept.c_str(), 1);
    }

} // namespace

LibrarySearchPaths::LibrarySearchPaths()
{
    for (const auto& [name, standard] : kLists) {
        const char* set = std::getenv(name);
        const auto& list = lists_.emplace_back(name, set && *set ? set : standard);
        const std::vector<std::string> parts = split(list.second);
        if (std::any_of(parts.begin(), parts.end(), mayHang))
            setList(list.first, list.second, [](const std::string& part) { return !mayHang(part); });
    }
}

void LibrarySearchPaths::bringUpToDate()
{
    const auto& [name, value] = lists_.front();
    setList(name, value, [](const std::string& directory) {
        const auto answer = statusOfPath(directory);
        return answer || answer.error().code != ETIMEDOUT;
    });
}

std::vector<std::string> LibrarySearchPaths::original(const std::string& name) const
{
    const auto list =
        std::find_if(lists_.begin(), lists_.end(), [&](const auto& candidate) { return candidate.first == name; });
    return list == lists_.end() ? std::vector<std::string> {} : split(list->second);
}

LibrarySearchPaths::Variables LibrarySearchPaths::forStartedPrograms() const
{
    Variables changed;
    std::copy_if(lists_.begin(), lists_.end(), std::back_inserter(changed), [](const auto& list) {
        const char* present = std::getenv(list.first.c_str());
        return present && list.second != present;
    });
    return changed;
}

} // namespace quillbox
