#include "RowDrag.h"

#include <QCoreApplication>
#include <QDrag>
#include <QGuiApplication>
#include <QPainter>
#include <QPointer>
#include <QPolygonF>

namespace quillbox {

namespace {

    // Of the arrow, in logical pixels. Its tip is the middle of the picture: that is where the toolkit points with it.
    constexpr int kCursorSide = 40;

    // The pointer without the sign for copying that the desktop adds to its own.
    QPixmap movingPointer()
    {
        const double ratio = qGuiApp->devicePixelRatio();
        QPixmap pointer(QSize(kCursorSide, kCursorSide) * ratio);
        pointer.setDevicePixelRatio(ratio);
        pointer.fill(Qt::transparent);
        QPainter painter(&pointer);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(kCursorSide / 2.0, kCursorSide / 2.0);
        painter.setPen(QPen(Qt::white, 1));
        painter.setBrush(Qt::black);
        painter.drawPolygon(
            QPolygonF { { 0, 0 }, { 0, 16 }, { 4, 12.5 }, { 6.5, 18 }, { 9, 17 }, { 6.5, 11.5 }, { 11.5, 11 } });
        return pointer;
    }

} // namespace

RowDrag::RowDrag(NSPasteboard pasteboard, NSDragOperation outside)
    : tracking_(std::make_shared<DragTracking>(std::move(pasteboard)))
{
    if (outside == NSDragOperation::copy)
        setText(QString::fromStdString(tracking_->pasteboard().plainText()));
}

void RowDrag::run(NSPasteboard pasteboard, NSDragOperation outside, const QPixmap& picture, QPoint hotSpot)
{
    auto* carried = new RowDrag(std::move(pasteboard), outside);
    const std::shared_ptr<DragTracking> tracking = carried->tracking();
    // No widget's: the one that the drag began on may be gone when it ends.
    auto* drag = new QDrag(QCoreApplication::instance());
    drag->setMimeData(carried);
    drag->setPixmap(picture);
    drag->setHotSpot(hotSpot);
    carried->setOperationHandler([drag = QPointer(drag), pointer = movingPointer()](NSDragOperation operation) {
        const bool isCopy = operation == NSDragOperation::copy || operation == NSDragOperation::none;
        if (drag)
            drag->setDragCursor(isCopy ? QPixmap() : pointer, Qt::CopyAction);
    });
    drag->exec(Qt::CopyAction);

    tracking->end();
}

void RowDrag::showOperation(NSDragOperation operation) const
{
    if (operationHandler_)
        operationHandler_(operation);
}

} // namespace quillbox
