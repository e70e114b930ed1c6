#pragma once

#include "NSMenuItem.h"

#include <QString>
#include <QStringList>

namespace quillbox {

// These functions tell how the text of menu rows is shown. They have no side effects. The painter, type-ahead, tool
// tips and descriptions use them.

// Returns `title` on one line: line breaks and other control characters become visible characters. A title longer than
// any screen can show is cut in the middle.
QString shownOnOneLine(const std::string& title);

// Returns the lines of a row, at least one: those of the attributed title if there is one, otherwise the title on one
// line.
QStringList shownLines(const NSMenuItem& item);

// Returns `text` in a form that QToolTip shows literally: mark-up has no effect, and words as long as a path can be
// wrapped.
QString toolTipMarkup(const QString& text);

// Returns the text with case folded, compatibility variants and composed characters decomposed, and accents removed.
// Texts that are the same after that count as equal when the user looks for a title.
QString foldedForSearch(const QString& text);

// Tells whether titles begin with what was typed; case and accents are ignored. One is made for each search, and most
// titles take only a few steps.
class TitlePrefix {
public:
    explicit TitlePrefix(const QString& typed);
    bool matches(const NSMenuItem& item) const;

private:
    QString folded_;
};

} // namespace quillbox
