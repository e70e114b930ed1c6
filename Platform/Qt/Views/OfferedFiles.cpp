#include "OfferedFiles.h"

#include "SelectionReader.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace quillbox {

namespace {

    constexpr const char* kFileList = "text/uri-list";

    bool isX11()
    {
        return QGuiApplication::platformName() == QStringLiteral("xcb");
    }

    QByteArray selectedFiles(const char* selection, unsigned long windowId)
    {
        const auto data = SelectionReader(windowId).read(selection, kFileList);
        return data ? QByteArray::fromStdString(*data) : QByteArray();
    }

    std::vector<std::string> addresses(const QByteArray& list)
    {
        std::vector<std::string> texts;
        for (const QByteArray& line : list.split('\n')) {
            const QByteArray text = line.trimmed();
            if (!text.isEmpty() && !text.startsWith('#'))
                texts.push_back(text.toStdString());
        }
        return texts;
    }

} // namespace

bool offersFiles(const QMimeData& drag)
{
    return drag.hasFormat(QString::fromLatin1(kFileList));
}

std::vector<std::string> droppedFiles(const QMimeData& drag, bool isOwn, unsigned long windowId)
{
    return addresses(isX11() && !isOwn ? selectedFiles("XdndSelection", windowId)
                                       : drag.data(QString::fromLatin1(kFileList)));
}

std::vector<std::string> copiedFiles(unsigned long windowId)
{
    const QClipboard& clipboard = *QGuiApplication::clipboard();
    // The toolkit would wait for the other program to tell which types it has, so it is not asked.
    if (isX11())
        return clipboard.ownsClipboard() ? std::vector<std::string>() : addresses(selectedFiles("CLIPBOARD", windowId));
    const QMimeData* copied = clipboard.mimeData();
    return copied ? addresses(copied->data(QString::fromLatin1(kFileList))) : std::vector<std::string>();
}

} // namespace quillbox
