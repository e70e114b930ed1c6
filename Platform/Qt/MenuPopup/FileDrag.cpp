#include "FileDrag.h"

#include "URL.h"

#include <QCoreApplication>
#include <QDrag>
#include <QMimeData>

namespace quillbox {

namespace {

    void run(const FileDrag& dragged)
    {
        auto* carried = new QMimeData;
        // A name that is not UTF-8 keeps its bytes only as they are encoded here.
        const std::string url = URL::fileURLWithPath(dragged.path).absoluteString();
        carried->setData(QStringLiteral("text/uri-list"), QByteArray::fromStdString(url + "\r\n"));
        // The drag belongs to no widget, because the menu goes away while it lasts.
        auto* drag = new QDrag(QCoreApplication::instance());
        drag->setMimeData(carried);
        drag->setPixmap(dragged.picture);
        drag->setHotSpot(dragged.hotSpot);
        if (dragged.origin)
            QMetaObject::invokeMethod(dragged.origin, &QWidget::hide, Qt::QueuedConnection);
        drag->exec(Qt::CopyAction | Qt::LinkAction, Qt::CopyAction);
    }

} // namespace

void runFileDrag(const FileDrag& drag)
{
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [drag] { run(drag); }, Qt::QueuedConnection);
}

} // namespace quillbox
