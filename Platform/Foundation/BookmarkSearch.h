#pragma once

#include <optional>
#include <string>

namespace quillbox {

struct Bookmark;

// Where the file of a bookmark is now that nothing is at its path. Asked for by resolving, and so at every
// opening of the menu while a picked file is missing: what it does is bounded and writes nothing. In order:
//
// 1. a reference that follows the file in this process;
// 2. mounts of its file system at other places: the file itself at the same place in the volume; where the
//    UUID says that it is the same volume, whatever is there;
// 3. the file itself in its directory, in the one above, and in that one's direct sub-directories;
// 4. the same around its place on the other mounts of 2, where the UUID is known.
//
// It never enters another file system, a link or a remote mount. Steps 3 and 4 look at no more than
// kMaximumSearchedEntries entries in kMaximumSearchedDirectories directories, step 2 at no more than
// kMaximumSearchedPlaces paths; a file beyond that stays missing. A file that was not found is not sought by steps 3
// and 4 again while the directories that they went through have not changed.
std::optional<std::string> findMovedFile(const Bookmark&);

inline constexpr int kMaximumSearchedEntries = 20000;
inline constexpr int kMaximumSearchedDirectories = 200;
inline constexpr int kMaximumSearchedPlaces = 5000;

// While one lives, all searches together keep within the bound of one, and no file is sought twice. Whoever resolves
// many bookmarks at once makes one; a further one inside it changes nothing.
class BookmarkSearchBound {
public:
    BookmarkSearchBound();
    ~BookmarkSearchBound();
    BookmarkSearchBound(const BookmarkSearchBound&) = delete;
    BookmarkSearchBound& operator=(const BookmarkSearchBound&) = delete;

private:
    bool isOutermost_;
};

} // namespace quillbox
