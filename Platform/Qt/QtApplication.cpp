#include "QtApplication.h"

#include "NSApplication.h"

#include <QThread>

namespace quillbox {

bool QtApplication::notify(QObject* receiver, QEvent* event)
{
    // Threads of the toolkit deliver their events here too.
    if (QThread::currentThread() != thread())
        return QApplication::notify(receiver, event);
    const NSApplication::EventScope scope;
    return QApplication::notify(receiver, event);
}

} // namespace quillbox
