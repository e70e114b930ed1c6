#pragma once

#include "AttributedString.h"
#include "CGColor.h"
#include "NSGeometry.h"

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QRect>

class QTextDocument;

namespace quillbox {

// These functions tell how the model's values look on this desktop. They have no side effects. Presenters and
// ControlSizes both use them, so that what is measured is what is painted.

// The desktop's font, measured for the resolution of its windows.
QFont ordinaryFont();
// Sizes are in logical pixels. The default size and family are those of `ordinary`.
QFont shownFont(const FontAttribute& font, const QFont& ordinary);
QColor shownColour(CGColor colour, const QPalette& palette);
// Returns the palette's link colour, unless it can't be read on the colour of windows: many dark themes don't set it.
QColor shownLinkColour(const QPalette& palette);
// Rounds each edge to the nearest pixel, so that adjacent rectangles stay adjacent.
QRect shownRect(NSRect rect);
// Replaces the document's content by the text, with each run in its font and links in `linkColour`.
void setDocumentText(QTextDocument& document, const AttributedString& text, const QFont& font,
                     const QColor& linkColour);
// In each paragraph that has a line wider than `width` (logical pixels) single line breaks become spaces. Places in the
// text stay where they are.
void reflowParagraphs(QTextDocument& document, double width);

} // namespace quillbox
