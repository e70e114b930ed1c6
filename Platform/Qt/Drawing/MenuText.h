#pragma once

#include "NSMenuItem.h"

#include <QString>
#include <QStringList>

namespace quillbox {

// The text of menu rows as it is shown. Pure; the painter, type-ahead, tool tips and descriptions use it.

// `title` on one line: line breaks and other control characters become visible signs. Titles past what any
// screen can show are cut in the middle.
QString shownOnOneLine(const std::string& title);

// The lines of a row, at least one: those of the attributed title where there is one, else the title on one
// line.
QStringList shownLines(const NSMenuItem& item);

// `text` as QToolTip shows it letter by letter: marks of rich text mean nothing, and words as long as a path
// can be broken.
QString toolTipMarkup(const QString& text);

// Whether a title begins with what was typed, case and accents ignored. Made once a search; asking costs a
// few steps for most titles.
class TitlePrefix {
public:
    explicit TitlePrefix(const QString& typed);
    bool matches(const NSMenuItem& item) const;

private:
    QString folded_;
};

} // namespace quillbox
