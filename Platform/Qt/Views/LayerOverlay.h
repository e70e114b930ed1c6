#pragma once

#include "NSView.h"

#include <QWidget>

#include <memory>

namespace quillbox {

// Draws a view's layer over its widget, of which it is a child: the border, and the present image of an animation. It
// takes no input.
class LayerOverlay final : public QWidget {
public:
    LayerOverlay(std::weak_ptr<NSView> view, QWidget& over);

    // Must be called when the layer has changed.
    void showLayer();

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::weak_ptr<NSView> view_;
};

} // namespace quillbox
