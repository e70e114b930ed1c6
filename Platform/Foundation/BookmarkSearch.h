#pragma once

#include <optional>
#include <string>

namespace quillbox {

struct Bookmark;

// Where the file of a bookmark is now that nothing is at its path: known to a reference of this process, in its volume
// mounted elsewhere, or near where it was. Asked for by resolving, and so at every opening of the menu while a picked
// file is missing: it writes nothing and never enters another file system, a link or a remote mount.
//
// It looks at no more than kMaximumSearchedEntries entries in kMaximumSearchedDirectories directories, and at
// kMaximumSearchedPlaces places of volumes; a file beyond that stays missing. Directories that were searched in vain
// are searched again once they have changed.
std::optional<std::string> findMovedFile(const Bookmark&);

// Looks in the directory of `place`, around it, and nowhere else.
std::optional<std::string> findMovedFileAround(const Bookmark& bookmark, const std::string& place);

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
