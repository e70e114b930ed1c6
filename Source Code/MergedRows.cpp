#include "MergedRows.h"

#include "PathRows.h"
#include "StringComparison.h"
#include "Unicode.h"

#include <algorithm>
#include <iterator>

namespace quillbox {

namespace {

    constexpr std::string_view kOperation =
        "createMenuItemForMainMenu(group1URLs:group2URLs:group1MissingMsg:optionFlagsSv:optionFlagsDv:)";

    template <class Element>
    void append(std::vector<Element>& list, std::vector<Element> more)
    {
        list.insert(list.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    }

    // The rows of one group of directories.
    struct Group {
        ItemList entries;
        std::size_t contributorCount = 0;
        // The row of the first directory that exists, and that of the first one with entries.
        std::shared_ptr<NSMenuItem> firstDirectory;
        std::shared_ptr<NSMenuItem> firstContributor;
    };

    Group collect(const std::vector<URL>& directories, const RowOwner& owner, RowOptions options,
                  std::vector<RowProblem>& problems)
    {
        Group group;
        for (const URL& directory : directories) {
            auto row = pathRow(directory, std::nullopt, RowPlace::topLevel, IfMissing::leaveOut, owner, options);
            append(problems, std::move(row.problems));
            if (!row.value)
                continue;
            if (!group.firstDirectory)
                group.firstDirectory = row.value;
            auto entries = directoryRows(directory, IfMissing::leaveOut, owner, options);
            append(problems, std::move(entries.problems));
            if (!entries.value || entries.value->empty())
                continue;
            append(group.entries, std::move(*entries.value));
            ++group.contributorCount;
            if (!group.firstContributor)
                group.firstContributor = row.value;
        }
        if (group.contributorCount > 1)
            group.entries = sortedByTitle(std::move(group.entries), false);
        return group;
    }

    // Makes a row for something that is missing, and an entry for the log.
    std::shared_ptr<NSMenuItem> reportedRow(const std::string& message, std::vector<RowProblem>& problems)
    {
        auto row = missingRow(message);
        problems.push_back({ kOperation, unicode::displayText(message) });
        return row;
    }

    // Removes rows that open the same path under the same title as the one before. Other rows (separators, messages)
    // are skipped in the comparison.
    void removeAdjacentDuplicates(ItemList& rows)
    {
        const NSMenuItemPlus* previous = nullptr;
        std::erase_if(rows, [&previous](const std::shared_ptr<NSMenuItem>& row) {
            const auto* current = dynamic_cast<const NSMenuItemPlus*>(row.get());
            if (!current)
                return false;
            const bool isRepeated = previous ? isCanonicallyEqual(current->title(), previous->title())
                    && current->pathToOpen() == previous->pathToOpen()
                                             : current->title().empty() && current->pathToOpen().empty();
            if (!isRepeated)
                previous = current;
            return isRepeated;
        });
    }

} // namespace

Made<std::shared_ptr<NSMenuItem>> mergedRow(const std::vector<URL>& group1URLs, const std::vector<URL>& group2URLs,
                                            const std::string& group1MissingMsg, const RowOwner& owner,
                                            RowOptions options)
{
    if (group1URLs.empty())
        return {};
    std::vector<RowProblem> problems;
    Group group1 = collect(group1URLs, owner, options, problems);
    if (group1.entries.empty() && !group1MissingMsg.empty())
        group1.entries.push_back(reportedRow(group1MissingMsg, problems));
    Group group2 = collect(group2URLs, owner, options, problems);

    auto row = group1.firstContributor ? group1.firstContributor : group1.firstDirectory;
    if (!row) {
        row = reportedRow(group1URLs.front().path() + " not found", problems);
        return { std::move(row), std::move(problems) };
    }

    ItemList joined = std::move(group1.entries);
    if (joined.empty() && group2.entries.empty()) {
        for (const auto* group : { &group1URLs, &group2URLs }) {
            for (const URL& directory : *group)
                joined.push_back(reportedRow(directory.path() + " not found", problems));
        }
    } else {
        if (!joined.empty() && !group2.entries.empty())
            joined.push_back(NSMenuItem::separatorItem());
        append(joined, std::move(group2.entries));
    }
    removeAdjacentDuplicates(joined);

    auto submenu = std::make_shared<NSMenu>();
    submenu->setItemArray(std::move(joined));
    row->setSubmenu(std::move(submenu));
    return { std::move(row), std::move(problems) };
}

} // namespace quillbox
