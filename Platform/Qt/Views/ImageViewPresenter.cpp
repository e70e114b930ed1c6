#include "ImageViewPresenter.h"

#include "ImageRenderer.h"

#include <QPainter>

#include <cmath>

namespace quillbox {

namespace {

    // The width of the frame around a photo, in logical pixels.
    constexpr double kPhotoFrame = 1;

    QSizeF scaledSize(QSizeF own, NSButton::ImageScaling scaling, QSizeF room)
    {
        switch (scaling) {
        case NSButton::ImageScaling::proportionallyUpOrDown:
            return own.scaled(room, Qt::KeepAspectRatio);
        case NSButton::ImageScaling::axesIndependently:
            return room;
        case NSButton::ImageScaling::none:
            return own;
        case NSButton::ImageScaling::proportionallyDown:
            break;
        }
        return own.width() <= room.width() && own.height() <= room.height() ? own
                                                                            : own.scaled(room, Qt::KeepAspectRatio);
    }

} // namespace

void paintImage(QPainter& painter, NSImage image, NSButton::ImageScaling scaling, const QRectF& room,
                const QColor& templateColour)
{
    const QSizeF size = scaledSize(QSizeF(image.size().width, image.size().height), scaling, room.size());
    image.setSize({ std::round(size.width()), std::round(size.height()) });
    const QPixmap pixmap = ImageRenderer::pixmap(image, painter.device()->devicePixelRatioF(), templateColour);
    const QSizeF drawn(image.size().width, image.size().height);
    painter.drawPixmap(QPointF(std::floor(room.x() + (room.width() - drawn.width()) / 2),
                               std::floor(room.y() + (room.height() - drawn.height()) / 2)),
                       pixmap);
}

void ImageWidget::paintEvent(QPaintEvent*)
{
    const auto view = view_.lock();
    if (!view)
        return;
    QPainter painter(this);
    QRectF room = rect();
    if (view->imageFrameStyle() == NSImageView::FrameStyle::photo) {
        painter.setPen(QPen(palette().color(QPalette::Mid), kPhotoFrame));
        painter.drawRect(room.adjusted(kPhotoFrame / 2, kPhotoFrame / 2, -kPhotoFrame / 2, -kPhotoFrame / 2));
        room.adjust(kPhotoFrame, kPhotoFrame, -kPhotoFrame, -kPhotoFrame);
    }
    paintImage(painter, view->image(), view->imageScaling(), room, palette().color(foregroundRole()));
}

ImageViewPresenter::ImageViewPresenter(const std::shared_ptr<NSImageView>& imageView, QWidget& parent)
    : ViewPresenter(imageView, new ImageWidget(imageView, &parent))
{
}

void ImageViewPresenter::showContent(NSView&)
{
    widget()->update();
}

} // namespace quillbox
