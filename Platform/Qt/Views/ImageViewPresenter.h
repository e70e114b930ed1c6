#pragma once

#include "NSImageView.h"
#include "ViewPresenter.h"

class QPainter;

namespace quillbox {

// Paints the image into the middle of `room`, in its own size or scaled. A template is painted in `templateColour`.
void paintImage(QPainter& painter, NSImage image, NSButton::ImageScaling scaling, const QRectF& room,
                const QColor& templateColour);

// The widget of an image view.
class ImageWidget final : public QWidget {
public:
    ImageWidget(std::weak_ptr<NSImageView> view, QWidget* parent) : QWidget(parent), view_(std::move(view)) { }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::weak_ptr<NSImageView> view_;
};

// Shows an image view.
class ImageViewPresenter final : public ViewPresenter {
public:
    ImageViewPresenter(const std::shared_ptr<NSImageView>& imageView, QWidget& parent);

protected:
    void showContent(NSView& view) override;
};

} // namespace quillbox
