#pragma once

#include "AttributedString.h"
#include "NSGeometry.h"

#include <QColor>
#include <QFont>
#include <QString>
#include <QTextDocument>

#include <memory>

class QPainter;

namespace quillbox {

// A label's text, laid out to be measured or painted: either one line, which is cut off with an ellipsis, or as many
// lines as it needs within a width. It depends on no widget.
class ShownText {
public:
    ShownText(const AttributedString& text, const QFont& font, bool isOneLine, const QColor& linkColour = {});

    // Its paragraphs become one line, to be wrapped, where one of their own lines is too long; see reflowParagraphs().
    void setReflowsParagraphs(bool reflows) { reflows_ = reflows; }

    // The size in whole pixels: as wide as the longest line, at most `widthLimit`, and as high as that makes it.
    NSSize size(double widthLimit);
    void paint(QPainter& painter, const QRect& rect, const QColor& colour);

private:
    QFont font_;
    // The text, if it is on one line.
    QString line_;
    bool reflows_ = false;
    std::unique_ptr<QTextDocument> lines_;
};

} // namespace quillbox
