#include "FuzzTarget.h"

#include "Check.h"
#include "DragDestination.h"
#include "NSPasteboard.h"
#include "NSWindow.h"
#include "URL.h"

#include <QDropEvent>
#include <QMimeData>
#include <QWidget>

#include <sstream>

namespace quillbox {

namespace {

    // Drops any text as the text/uri-list of another program.
    void dropList(const Data& bytes)
    {
        startDisplay();
        const std::string text = textOf(bytes);
        std::vector<std::string> lines;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        const NSPasteboard pasteboard = NSPasteboard::ofFiles(lines);
        QB_CHECK(pasteboard.items().size() <= lines.size());
        const auto urls = pasteboard.fileURLs();
        QB_CHECK(urls && urls->size() == pasteboard.items().size());
        for (const URL& url : *urls) {
            QB_CHECK(url.path().starts_with('/') && url.path().find('\0') == std::string::npos);
            const Result<URL> again = URL::fromString(url.absoluteString());
            QB_CHECK(again && again->path() == url.path());
        }

        QMimeData mime;
        mime.setData(QStringLiteral("text/uri-list"), QByteArray(text.data(), static_cast<qsizetype>(text.size())));
        const QWidget widget;
        DragDestination destination({}, widget);
        QDragMoveEvent move({ 1, 1 }, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        destination.enter(move);
        destination.move(move);
        QB_CHECK(!move.isAccepted());
        QDropEvent drop({ 1, 1 }, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        destination.drop(drop);
        QB_CHECK(!drop.isAccepted());
    }

    const FuzzTarget kTarget("drop", dropList);

} // namespace

} // namespace quillbox
