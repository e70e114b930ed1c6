#pragma once

#include "NSView.h"

#include <QWidget>

#include <memory>

namespace quillbox {

// Draws a view's layer over its widget, of which it is a child: the border, and what an animation shows. Takes no
// input.
class LayerOverlay final : public QWidget {
public:
    LayerOverlay(std::weak_ptr<NSView> view, QWidget& over);

    // The layer has changed.
    void showLayer();

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::weak_ptr<NSView> view_;
};

} // namespace quillbox
