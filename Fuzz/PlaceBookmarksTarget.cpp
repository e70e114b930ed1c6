#include "FuzzTarget.h"

#include "Check.h"
#include "PlaceBookmarks.h"
#include "Unicode.h"

namespace quillbox {

namespace {

    void readLists(const Data& bytes)
    {
        const std::string text = textOf(bytes);
        for (const auto& bookmarks : { readGtkBookmarks(text), readPlasmaBookmarks(text) }) {
            QB_CHECK(bookmarks.size() <= 200);
            for (const PlaceBookmark& bookmark : bookmarks) {
                QB_CHECK(bookmark.path.starts_with('/') && bookmark.path.find('\0') == std::string::npos);
                QB_CHECK(unicode::displayText(bookmark.title) == bookmark.title);
            }
        }
    }

    const FuzzTarget kTarget("place-bookmarks", readLists);

} // namespace

} // namespace quillbox
