#pragma once

#include "Data.h"
#include "FileIdentity.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quillbox {

// A directory as it was just before it was searched. Its time stamp changes when an entry comes or goes, or when the
// right to search it changes.
struct SearchedDirectory {
    std::string path;
    // None if the directory could not be looked at.
    std::optional<FileStatus> status;

    static SearchedDirectory at(const std::string& path);
    bool isAsItWas() const;
    // Whether every later change will show in the time stamp. File systems stamp by a coarse clock, so a change right
    // after another one may leave the stamp as it is.
    bool isSettled() const;
};

// Remembers searches that found nothing, so that they are not repeated while everything that they went through is
// unchanged. BookmarkSearch keeps one for as long as the process runs.
class FilesNotFound {
public:
    // Whether the file of the bookmark with these bytes was searched for around these places, and would still not be
    // found.
    bool contains(const Data& bookmark, const std::vector<std::string>& places);
    void add(const Data& bookmark, std::vector<std::string> places, std::vector<SearchedDirectory> searched);

    // These give each file its turn, so that one whose directories change all the time does not keep others from being
    // searched for: files that were put off come first at the next opening, and the other files have to wait for them.
    bool hasToWait(const Data& bookmark);
    void putOff(const Data& bookmark) { putOff_.insert(bookmark); }

    // Ends an opening. Forgets the searches that were not asked for in it: their files are no longer picked, or were
    // found.
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
