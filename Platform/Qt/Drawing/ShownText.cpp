#include "ShownText.h"

#include "Appearance.h"
#include "MenuText.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace quillbox {

namespace {

    // The layout is asked for the size, because characters that are taken from another font may be higher than this
    // font.
    QSizeF layOutLine(QTextLayout& layout)
    {
        QTextOption option;
        option.setWrapMode(QTextOption::NoWrap);
        layout.setTextOption(option);
        layout.beginLayout();
        const QTextLine line = layout.createLine();
        layout.endLayout();
        return line.isValid() ? QSizeF(line.naturalTextWidth(), line.height()) : QSizeF();
    }

} // namespace

ShownText::ShownText(const AttributedString& text, const QFont& font, bool isOneLine, const QColor& linkColour)
    : font_(font)
{
    if (isOneLine) {
        line_ = shownOnOneLine(text.string());
        return;
    }
    lines_ = std::make_unique<QTextDocument>();
    setDocumentText(*lines_, text, font, linkColour);
}

NSSize ShownText::size(double widthLimit)
{
    if (!lines_) {
        QTextLayout layout(line_.isEmpty() ? QStringLiteral(" ") : line_, font_);
        const QSizeF size = layOutLine(layout);
        return { std::min(std::ceil(size.width()), widthLimit), std::ceil(size.height()) };
    }
    lines_->setTextWidth(-1);
    const double widest = std::ceil(lines_->idealWidth());
    if (widest <= widthLimit)
        return { widest, std::ceil(lines_->size().height()) };
    const double width = std::max(1.0, std::floor(widthLimit));
    if (reflows_)
        reflowParagraphs(*lines_, width);
    lines_->setTextWidth(width);
    return { std::min(std::ceil(lines_->idealWidth()), widthLimit), std::ceil(lines_->size().height()) };
}

void ShownText::paint(QPainter& painter, const QRect& rect, const QColor& colour)
{
    painter.save();
    painter.translate(rect.topLeft());
    if (lines_) {
        lines_->setTextWidth(rect.width());
        QAbstractTextDocumentLayout::PaintContext context;
        context.palette.setColor(QPalette::Text, colour);
        lines_->documentLayout()->draw(&painter, context);
    } else {
        // A line that is drawn with symbols continues to the edge; one with words ends in an ellipsis.
        const bool hasWords =
            std::any_of(line_.begin(), line_.end(), [](QChar sign) { return sign.isLetterOrNumber(); });
        const QFontMetricsF metrics(font_);
        QTextLayout layout(hasWords ? metrics.elidedText(line_, Qt::ElideRight, rect.width()) : line_, font_);
        const QSizeF size = layOutLine(layout);
        painter.setPen(colour);
        layout.draw(&painter, QPointF(0, std::floor((rect.height() - size.height()) / 2)));
    }
    painter.restore();
}

} // namespace quillbox
