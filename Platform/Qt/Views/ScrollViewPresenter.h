#pragma once

#include "NSScrollView.h"
#include "ViewPresenter.h"

#include <QFrame>

class QScrollBar;

namespace quillbox {

// The border and the scroller, and what wheels and touchpads do over them and what they hold.
class ScrollViewWidget final : public QWidget {
public:
    ScrollViewWidget(std::weak_ptr<NSScrollView> view, QWidget* parent);

    QScrollBar* scroller() const { return scroller_; }
    // Above all that is in it: where a point is not a whole number of pixels, that would cover an edge.
    QFrame* border() const { return border_; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void scroll(double toY);

    QScrollBar* scroller_;
    QFrame* border_;
    std::weak_ptr<NSScrollView> view_;
    // The fraction of a pixel that a slow wheel or touchpad has scrolled.
    double rest_ = 0;
};

// Shows a scroll view.
class ScrollViewPresenter final : public ViewPresenter {
public:
    ScrollViewPresenter(const std::shared_ptr<NSScrollView>& scrollView, QWidget& parent);

protected:
    void showContent(NSView& view) override;
    void subviewsShown(NSView& view) override;
};

} // namespace quillbox
