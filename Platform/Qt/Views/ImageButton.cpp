#include "ImageButton.h"

#include "ImageViewPresenter.h"

#include <QKeyEvent>
#include <QPainter>

namespace quillbox {

namespace {
    constexpr double kPressedOpacity = 0.5;
    constexpr double kRingRadius = 3;
} // namespace

ImageButton::ImageButton(QWidget* parent) : QAbstractButton(parent)
{
    setFocusPolicy(Qt::StrongFocus);
}

void ImageButton::showImage(NSImage image, NSButton::ImageScaling scaling)
{
    image_ = std::move(image);
    scaling_ = scaling;
    update();
}

void ImageButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (isDown() || !isEnabled())
        painter.setOpacity(kPressedOpacity);
    paintImage(painter, image_, scaling_, rect(), palette().color(foregroundRole()));
    painter.setOpacity(1);
    if (hasFocus()) {
        // The style's own focus frame is made for larger controls and can't be seen on a picture.
        const bool isOnSelection = backgroundRole() == QPalette::Highlight;
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(palette().color(isOnSelection ? QPalette::HighlightedText : QPalette::Highlight));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRingRadius, kRingRadius);
    }
}

void ImageButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace quillbox
