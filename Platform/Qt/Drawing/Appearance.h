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

// How the model's values look on this desktop. Pure; presenters and ControlSizes use it, so that what is measured
// is what is painted.

// The desktop's font, measured for the resolution of its windows.
QFont ordinaryFont();
// Sizes are logical pixels; the default size and family are those of `ordinary`.
QFont shownFont(const FontAttribute& font, const QFont& ordinary);
QColor shownColour(CGColor colour, const QPalette& palette);
// The palette's, unless that can't be read on the colour of its windows: many dark themes leave it as it is.
QColor shownLinkColour(const QPalette& palette);
// Each edge goes to the nearest pixel, so that neighbours stay neighbours.
QRect shownRect(NSRect rect);
// Replaces the document's content: runs in their fonts, links in `linkColour`.
void setDocumentText(QTextDocument& document, const AttributedString& text, const QFont& font,
                     const QColor& linkColour);
// In each paragraph that has a line wider than `width` (logical pixels) single line breaks become spaces. Places in the
// text stay where they are.
void reflowParagraphs(QTextDocument& document, double width);

} // namespace quillbox
