#include "LayerOverlay.h"

#include "Appearance.h"
#include "CALayer.h"
#include "ImageRenderer.h"

#include <QEvent>
#include <QPainter>

namespace quillbox {

LayerOverlay::LayerOverlay(std::weak_ptr<NSView> view, QWidget& over) : QWidget(&over), view_(std::move(view))
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    over.installEventFilter(this);
    setGeometry(over.rect());
    show();
}

void LayerOverlay::showLayer()
{
    raise();
    update();
}

bool LayerOverlay::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void LayerOverlay::paintEvent(QPaintEvent*)
{
    const std::shared_ptr<NSView> view = view_.lock();
    const CALayer* layer = view ? view->layer() : nullptr;
    if (!layer)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (const auto* contents = std::any_cast<NSImage>(&layer->presentationContents())) {
        NSImage image = *contents;
        image.setSize({ static_cast<double>(width()), static_cast<double>(height()) });
        painter.drawPixmap(0, 0, ImageRenderer::pixmap(image, devicePixelRatioF(), palette().color(foregroundRole())));
    }
    if (const double line = layer->borderWidth(); line > 0) {
        QPen pen(shownColour(layer->borderColor(), palette()), line);
        pen.setJoinStyle(Qt::MiterJoin);
        painter.setPen(pen);
        painter.drawRect(QRectF(rect()).adjusted(line / 2, line / 2, -line / 2, -line / 2));
    }
}

} // namespace quillbox
