#pragma once

#include <QString>

namespace quillbox {

// Hosts make a menu as wide as its longest title, and put it over the one that it came from where it does not fit
// beside that. So titles are cut to a share of the narrowest screen's width that leaves room for two menus beside each
// other, measured in this program's own font: panels use that of the desktop too, or one much like it.

enum class TitleWidth {
    whole,
    half, // Two of them make one title.
};

// `title` with its middle left out if it is too wide, never inside of what is read as one character.
QString shownTitle(const QString& title, TitleWidth width = TitleWidth::whole);

} // namespace quillbox
