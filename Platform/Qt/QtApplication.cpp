#include "QtApplication.h"

#include "NSApplication.h"

#include <QThread>

namespace quillbox {

bool QtApplication::notify(QObject* receiver, QEvent* event)
{
    // The toolkit's own threads deliver events here too.
    if (QThread::currentThread() != thread())
        return QApplication::notify(receiver, event);
    const NSApplication::EventScope scope;
    return QApplication::notify(receiver, event);
}

} // namespace quillbox
