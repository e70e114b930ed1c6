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
    // No widget's: the one that the drag began on may be gone when it ends.
    auto* drag = new QDrag(QCoreApplication::instance());
    drag->setMimeData(carried);
    drag->setPixmap(picture);
    drag->setHotSpot(hotSpot);
    carried->setOperationHandler([drag = QPointer(drag)](NSDragOperation operation) {
        const bool isCopy = operation == NSDragOperation::copy || operation == NSDragOperation::none;
        if (!drag || isCopy)
            return;
        // The toolkit is told of a copy and shows the theme's pointer for that, once it has its answer.
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
