#include "ScrollViewPresenter.h"

#include "Appearance.h"
#include "NSTableView.h"

#include <QApplication>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QWheelEvent>

#include <cmath>

namespace quillbox {

namespace {

    constexpr double kAngleOfNotch = 120;

    double lineOf(const NSScrollView& view)
    {
        const auto* table = dynamic_cast<const NSTableView*>(view.contentView()->documentView().get());
        return table ? table->rowHeight() : QFontMetrics(ordinaryFont()).lineSpacing();
    }

    // A frame as the style paints it. Where a point is no whole number of pixels, the style's may lie a pixel outside
    // of what is shown; it is painted here then.
    class Border final : public QFrame {
    public:
        explicit Border(QWidget* parent) : QFrame(parent) { setAttribute(Qt::WA_TransparentForMouseEvents); }

    protected:
        void paintEvent(QPaintEvent* event) override
        {
            if (devicePixelRatioF() == std::floor(devicePixelRatioF())) {
                QFrame::paintEvent(event);
                return;
            }
            constexpr double kPart = 0.4;
            QColor colour = palette().color(QPalette::WindowText);
            colour.setAlphaF(kPart);
            QPainter painter(this);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(QPen(colour, 1));
            painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
        }
    };

} // namespace

ScrollViewWidget::ScrollViewWidget(std::weak_ptr<NSScrollView> view, QWidget* parent)
    : QWidget(parent),
      scroller_(new QScrollBar(Qt::Vertical, this)),
      border_(new Border(this)),
      view_(std::move(view))
{
    connect(scroller_, &QScrollBar::valueChanged, this, [this](int value) { scroll(value); });
}

void ScrollViewWidget::resizeEvent(QResizeEvent*)
{
    border_->setGeometry(rect());
}

void ScrollViewWidget::wheelEvent(QWheelEvent* event)
{
    const auto view = view_.lock();
    if (!view || event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier)) {
        event->ignore();
        return;
    }
    // Touchpads report the distance in pixels; wheels report fractions of a notch, which may be small.
    const double notches = event->angleDelta().y() / kAngleOfNotch;
    const double down = event->pixelDelta().isNull()
        ? -notches * QApplication::wheelScrollLines() * scroller_->singleStep()
        : -event->pixelDelta().y();
    if (event->phase() == Qt::ScrollBegin || (rest_ > 0) != (down > 0))
        rest_ = 0;
    rest_ += down;
    const double whole = std::trunc(rest_);
    rest_ -= whole;
    const double y = view->contentView()->bounds().minY();
    scroll(y + whole);
    // At its end what is around it scrolls.
    event->setAccepted(down > 0 ? y < view->contentView()->maximumScroll() : y > 0);
}

void ScrollViewWidget::scroll(double toY)
{
    if (const auto view = view_.lock())
        view->contentView()->scroll(toY);
}

ScrollViewPresenter::ScrollViewPresenter(const std::shared_ptr<NSScrollView>& scrollView, QWidget& parent)
    : ViewPresenter(scrollView, new ScrollViewWidget(scrollView, &parent))
{
}

void ScrollViewPresenter::showContent(NSView& view)
{
    const auto& scrollView = dynamic_cast<const NSScrollView&>(view);
    auto* frame = static_cast<ScrollViewWidget*>(widget());
    switch (scrollView.borderType()) {
    case NSScrollView::BorderType::noBorder:
        frame->border()->setFrameStyle(QFrame::NoFrame);
        break;
    case NSScrollView::BorderType::lineBorder:
        frame->border()->setFrameStyle(QFrame::Box | QFrame::Plain);
        break;
    case NSScrollView::BorderType::bezelBorder:
        frame->border()->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
        break;
    }
    frame->setAutoFillBackground(scrollView.drawsBackground());
    frame->setBackgroundRole(QPalette::Base);
}

void ScrollViewPresenter::subviewsShown(NSView& view)
{
    const auto& scrollView = dynamic_cast<const NSScrollView&>(view);
    const NSClipView& clip = *scrollView.contentView();
    auto* frame = static_cast<ScrollViewWidget*>(widget());
    QScrollBar* scroller = frame->scroller();
    frame->border()->setVisible(frame->border()->frameStyle() != QFrame::NoFrame);
    frame->border()->raise();
    scroller->setVisible(scrollView.showsVerticalScroller());
    scroller->setGeometry(shownRect(scrollView.verticalScrollerFrame()));
    const QSignalBlocker scrollsNothing(scroller);
    scroller->setPageStep(static_cast<int>(clip.bounds().size.height));
    scroller->setSingleStep(static_cast<int>(lineOf(scrollView)));
    scroller->setMaximum(static_cast<int>(std::ceil(clip.maximumScroll())));
    scroller->setValue(static_cast<int>(std::lround(clip.bounds().minY())));
}

} // namespace quillbox
