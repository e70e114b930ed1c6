#pragma once

#include "NSButton.h"

#include <QAbstractButton>

namespace quillbox {

// A button without a border that shows one picture.
class ImageButton final : public QAbstractButton {
public:
    explicit ImageButton(QWidget* parent);

    void showImage(NSImage image, NSButton::ImageScaling scaling);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    NSImage image_;
    NSButton::ImageScaling scaling_ = NSButton::ImageScaling::proportionallyDown;
};

} // namespace quillbox
