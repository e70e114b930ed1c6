#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

// A directory of this computer that the person has bookmarked in a file manager. Whether it is there was not looked at.
struct PlaceBookmark {
    // Absolute, the file system's bytes.
    std::string path;
    // As the person called it, in UTF-8; empty where they gave it no name.
    std::string title;

    friend bool operator==(const PlaceBookmark&, const PlaceBookmark&) = default;
};

// The readers of the two lists of bookmarks that Linux desktops keep. Each gives what can be read of a damaged list, in
// its order, and leaves out bookmarks of other computers. A list gives at most 200.

// GTK's, which GNOME, Xfce, MATE and Cinnamon share: a line a bookmark, its URL and after a blank its name.
std::vector<PlaceBookmark> readGtkBookmarks(std::string_view text);
// Plasma's, in XML. Entries that Plasma made itself or that the person has hidden are left out.
std::vector<PlaceBookmark> readPlasmaBookmarks(std::string_view xbel);

// Both lists of a person, GTK's first, as the files have them now. A file that is missing, can't be read or has more
// than a megabyte gives none.
std::vector<PlaceBookmark> placeBookmarks(const std::string& home, const std::string& configHome,
                                          const std::string& dataHome);

} // namespace quillbox
