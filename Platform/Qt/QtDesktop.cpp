#include "QtDesktop.h"

#include "StatusItemPresenter.h"

#include <QApplication>
#include <QClipboard>
#include <QPixmapCache>
#include <QWidget>

namespace quillbox {

namespace {

    // The toolkit takes the token from this variable when a window is to be brought to the front, and unsets it.
    constexpr const char* kTokenForWindows = "XDG_ACTIVATION_TOKEN";

} // namespace

QtDesktop::QtDesktop(QApplication& application) : application_(application)
{
    // The program runs in the status bar, whether it has windows or not.
    QApplication::setQuitOnLastWindowClosed(false);
    // The toolkit's pixmap cache would wake an idle process half a minute after the last drawing. ImageRenderer keeps
    // what is worth keeping.
    QPixmapCache::setCacheLimit(0);
}

QtDesktop::~QtDesktop() = default;

void QtDesktop::showStatusItem(NSStatusItem& item)
{
    statusItem_.reset();
    statusItem_ = std::make_unique<StatusItemPresenter>(item, menuPresenter_, shortMenu_, menuDrawingOfSession());
    statusItem_->setActivationTokenHandlers(takeActivationToken_, isActivationTokenTaken_);
}

void QtDesktop::setActivationTokenHandlers(std::function<void(const std::string&)> take, std::function<bool()> isTaken)
{
    takeActivationToken_ = std::move(take);
    isActivationTokenTaken_ = [isTaken = std::move(isTaken)] {
        return !qEnvironmentVariableIsSet(kTokenForWindows) || isTaken();
    };
    if (statusItem_)
        statusItem_->setActivationTokenHandlers(takeActivationToken_, isActivationTokenTaken_);
}

void QtDesktop::setActivationToken(const std::string& token)
{
    qputenv(kTokenForWindows, QByteArray::fromStdString(token));
}

void QtDesktop::openMenu()
{
    if (statusItem_)
        statusItem_->openMenu();
}

void QtDesktop::openMenuByKeyboard()
{
    if (statusItem_)
        statusItem_->openMenuByKeyboard();
}

void QtDesktop::startedAgain()
{
    if (statusItem_)
        statusItem_->showStripAgain();
}

void QtDesktop::hideStatusItem(NSStatusItem&)
{
    menuPresenter_.close();
    statusItem_.reset();
}

void QtDesktop::runModal(const NSAlert& alert)
{
    // An open menu holds the pointer, so the alert could not be answered.
    menuPresenter_.close();
    if (!isStopped_)
        alertPresenter_.run(alert);
    if (statusItem_)
        statusItem_->alertHasEnded();
}

NSRect QtDesktop::naturalFrame(const NSAlert& alert)
{
    return AlertPresenter::naturalFrame(alert);
}

void QtDesktop::copyText(const std::string& text)
{
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

void QtDesktop::activate()
{
    if (alertPresenter_.isRunning()) {
        alertPresenter_.raise();
        return;
    }
    for (QWidget* window : QApplication::topLevelWidgets()) {
        const Qt::WindowType type = window->windowType();
        if (!window->isVisible() || (type != Qt::Window && type != Qt::Dialog))
            continue;
        window->raise();
        window->activateWindow();
    }
    windows_.activate();
}

int QtDesktop::run()
{
    // A request to stop that came before the loop runs would be forgotten by the loop.
    return isStopped_ ? 0 : application_.exec();
}

void QtDesktop::stop()
{
    isStopped_ = true;
    application_.exit(0);
}

} // namespace quillbox
