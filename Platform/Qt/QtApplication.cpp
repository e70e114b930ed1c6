#include "QtApplication.h"

#include "NSApplication.h"

#include <QLocale>
#include <QThread>

namespace quillbox {

QtApplication::QtApplication(int& argc, char** argv) : QApplication(argc, argv)
{
    // The toolkit itself goes by the language of its translations, of which we bring none. The menu's titles are names
    // of the person's own files and applications.
    const QStringList languages = QLocale::system().uiLanguages();
    if (!languages.isEmpty() && QLocale(languages.first()).textDirection() == Qt::RightToLeft)
        setLayoutDirection(Qt::RightToLeft);
}

bool QtApplication::notify(QObject* receiver, QEvent* event)
{
    // Threads of the toolkit deliver their events here too.
    if (QThread::currentThread() != thread())
        return QApplication::notify(receiver, event);
    const NSApplication::EventScope scope;
    return QApplication::notify(receiver, event);
}

} // namespace quillbox
