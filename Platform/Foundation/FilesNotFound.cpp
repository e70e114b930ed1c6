#include "FilesNotFound.h"

#include "URL.h"

#include <algorithm>
#include <ctime>
#include <utility>

namespace quillbox {

namespace {

    // Some file systems keep times in steps of two seconds; none that is common has coarser ones.
    constexpr std::int64_t kSettlingSeconds = 2;

} // namespace

SearchedDirectory SearchedDirectory::at(const std::string& path)
{
    // The "." makes a link count as the directory it leads to.
    const Result<FileStatus> status = lookAtFile(path::appending(path, "."));
    return { path, status ? std::optional(*status) : std::nullopt };
}

bool SearchedDirectory::isAsItWas() const
{
    const SearchedDirectory now = at(path);
    if (!status || !now.status)
        return !status && !now.status;
    return now.status->identity == status->identity && now.status->modified == status->modified
        && now.status->changed == status->changed;
}

bool SearchedDirectory::isSettled() const
{
    if (!status)
        return true;
    timespec now {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return status->modified && status->changed && status->modified->seconds + kSettlingSeconds < now.tv_sec;
}

bool FilesNotFound::contains(const Data& bookmark, const std::vector<std::string>& places)
{
    asked_.insert(bookmark);
    const auto found = searches_.find(bookmark);
    if (found == searches_.end())
        return false;
    const Search& search = found->second;
    return search.places == places
        && std::all_of(search.searched.begin(), search.searched.end(),
                       [](const SearchedDirectory& directory) { return directory.isAsItWas(); });
}

void FilesNotFound::add(const Data& bookmark, std::vector<std::string> places, std::vector<SearchedDirectory> searched)
{
    const bool isSettled = std::all_of(searched.begin(), searched.end(),
                                       [](const SearchedDirectory& directory) { return directory.isSettled(); });
    if (isSettled)
        searches_[bookmark] = { std::move(places), std::move(searched) };
    else
        searches_.erase(bookmark);
}

bool FilesNotFound::hasToWait(const Data& bookmark)
{
    return first_.erase(bookmark) == 0 && !first_.empty();
}

void FilesNotFound::endOpening()
{
    std::erase_if(searches_, [this](const auto& search) { return !asked_.contains(search.first); });
    asked_.clear();
    first_ = std::exchange(putOff_, {});
}

} // namespace quillbox
