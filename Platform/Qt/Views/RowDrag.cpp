#include "RowDrag.h"

#include <QCoreApplication>
#include <QCursor>
#include <QDrag>
#include <QGuiApplication>
#include <QPointer>

namespace quillbox {

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
    // The drag belongs to no widget, because the one on which it began may be gone when it ends.
    auto* drag = new QDrag(QCoreApplication::instance());
    drag->setMimeData(carried);
    drag->setPixmap(picture);
    drag->setHotSpot(hotSpot);
    carried->setOperationHandler([drag = QPointer(drag)](NSDragOperation operation) {
        const bool isCopy = operation == NSDragOperation::copy || operation == NSDragOperation::none;
        if (!drag || isCopy)
            return;
        // The toolkit is told of a copy, and shows the theme's pointer for that when it has its answer. So the pointer
        // is changed after that.
        QMetaObject::invokeMethod(
            drag,
            [] {
                if (QGuiApplication::overrideCursor())
                    QGuiApplication::changeOverrideCursor(QCursor(Qt::DragMoveCursor));
            },
            Qt::QueuedConnection);
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
