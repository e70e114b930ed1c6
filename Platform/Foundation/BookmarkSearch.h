#pragma once

#include <optional>
#include <string>

namespace quillbox {

struct Bookmark;

// Returns the path of a bookmark's file when nothing is at its old path any more: the path that a file reference of
// this process knows, the file's place in its volume if that is mounted elsewhere, or a place near the old one.
// Resolving asks for it, and so does every opening of the menu while a picked file is missing. The search therefore
// writes nothing and never enters another file system, a link or a remote mount.
//
// It looks at no more than kMaximumSearchedEntries entries in kMaximumSearchedDirectories directories, and at
// kMaximumSearchedPlaces places of volumes; a file beyond that stays missing. Directories that were searched in vain
// are searched again only after they have changed.
std::optional<std::string> findMovedFile(const Bookmark&);

// Searches the directory of `place`, the one above it and that one's direct subdirectories, and nothing else.
std::optional<std::string> findMovedFileAround(const Bookmark& bookmark, const std::string& place);

inline constexpr int kMaximumSearchedEntries = 20000;
inline constexpr int kMaximumSearchedDirectories = 200;
inline constexpr int kMaximumSearchedPlaces = 5000;

// While an object of this class lives, all searches together keep within the limits of a single one, and no file is
// searched for twice. Whoever resolves many bookmarks at once makes one; another one made inside it has no effect.
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
