#include "TextLabel.h"

#include "Appearance.h"

#include <QEvent>
#include <QPainter>

namespace quillbox {

void TextLabel::showText(const AttributedString& text, bool isOneLine)
{
    text_ = text;
    isOneLine_ = isOneLine;
    plain_ = QString::fromStdString(text.string());
    laidOut_.reset();
    update();
}

void TextLabel::setOwnColour(std::optional<QColor> colour)
{
    ownColour_ = colour;
    update();
}

ShownText& TextLabel::laidOut()
{
    if (!laidOut_)
        laidOut_.emplace(text_, font(), isOneLine_, shownLinkColour(palette()));
    return *laidOut_;
}

void TextLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    laidOut().paint(painter, rect(), ownColour_.value_or(palette().color(foregroundRole())));
}

void TextLabel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) {
        laidOut_.reset();
        update();
    }
}

} // namespace quillbox
