#pragma once

#include "Data.h"
#include "FileIdentity.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quillbox {

// A directory as it was just before it was searched. It has another stamp once an entry has come or gone, or who may
// search it has changed.
struct SearchedDirectory {
    std::string path;
    // None where it could not be looked at.
    std::optional<FileStatus> status;

    static SearchedDirectory at(const std::string& path);
    bool isAsItWas() const;
    // Whether any later change shows: file systems stamp by a coarse clock, so that one which follows another at once
    // may leave the stamp as it is.
    bool isSettled() const;
};

// The searches that found nothing, so that they need not be made again while all that they went through is as it was.
// Kept by BookmarkSearch for as long as the process runs.
class FilesNotFound {
public:
    // Whether the file of the bookmark with these bytes was sought around these places, and would not be found again.
    bool contains(const Data& bookmark, const std::vector<std::string>& places);
    void add(const Data& bookmark, std::vector<std::string> places, std::vector<SearchedDirectory> searched);

    // Turns, so that a file whose directories change all the time does not keep the others from being sought: those
    // that the last opening put off come first, and the rest of this one has to wait for them.
    bool hasToWait(const Data& bookmark);
    void putOff(const Data& bookmark) { putOff_.insert(bookmark); }

    // Ends an opening. Forgets what was not asked for in it: those files are no longer picked, or were found.
    void endOpening();

private:
    struct Search {
        std::vector<std::string> places;
        std::vector<SearchedDirectory> searched;
    };

    std::map<Data, Search> searches_;
    std::set<Data> asked_;
    std::set<Data> first_;
    std::set<Data> putOff_;
};

} // namespace quillbox
