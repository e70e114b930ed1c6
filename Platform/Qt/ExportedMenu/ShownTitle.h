#pragma once

#include <QString>

namespace quillbox {

// Hosts make a menu as wide as its longest title, and put it over its parent menu if there is no room beside that.
// Titles are therefore cut to a share of the narrowest screen's width that leaves room for two menus beside each other.
// They are measured in this program's own font, because panels use the desktop's font or a similar one.

enum class TitleWidth {
    whole,
    half, // for two texts that make one title
};

// Returns `title`, with its middle left out if it is too wide. Characters that are made of several code points are not
// cut apart.
QString shownTitle(const QString& title, TitleWidth width = TitleWidth::whole);

} // namespace quillbox
