#include "WindowPresenter.h"

#include "Appearance.h"
#include "ImageRenderer.h"
#include "KeyViewLoop.h"
#include "NSApplication.h"
#include "NSButton.h"
#include "NSTabView.h"
#include "SheetShield.h"
#include "ViewKinds.h"
#include "WindowRoom.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <string>

namespace quillbox {

namespace {

    const QEvent::Type kDisplayEvent = static_cast<QEvent::Type>(QEvent::registerEventType());
    constexpr double kIconSides[] = { 16, 24, 32, 48, 64, 128 };

    // Asks only for the buttons that the style mask names; window managers leave out the others.
    Qt::WindowFlags flagsOf(const NSWindow& window, bool isSheet)
    {
        Qt::WindowFlags flags = (isSheet ? Qt::Dialog : Qt::Window) | Qt::CustomizeWindowHint;
        const unsigned mask = window.styleMask();
        flags.setFlag(Qt::WindowTitleHint, mask & NSWindow::titled);
        flags.setFlag(Qt::WindowSystemMenuHint, mask & NSWindow::titled);
        flags.setFlag(Qt::WindowCloseButtonHint, mask & NSWindow::closable);
        flags.setFlag(Qt::WindowMinimizeButtonHint, mask & NSWindow::miniaturizable);
        flags.setFlag(Qt::WindowMaximizeButtonHint, (mask & NSWindow::miniaturizable) && (mask & NSWindow::resizable));
        return flags;
    }

    QIcon applicationIcon()
    {
        QIcon icon;
        if (auto image = NSImage::imageNamed("Quillbox Icon")) {
            for (const double side : kIconSides) {
                image->setSize({ side, side });
                icon.addPixmap(ImageRenderer::pixmap(*image, 1, QApplication::palette().color(QPalette::WindowText)));
            }
        }
        return icon;
    }

    // Returns the button that the key presses, wherever the keyboard focus is.
    std::shared_ptr<NSButton> buttonOf(const std::shared_ptr<NSView>& view, char key)
    {
        if (view->isHidden())
            return nullptr;
        if (auto button = std::dynamic_pointer_cast<NSButton>(view);
            button && button->keyEquivalent().find(key) != std::string::npos)
            return button;
        for (const auto& subview : view->subviews()) {
            if (auto button = buttonOf(subview, key))
                return button;
        }
        return nullptr;
    }

    std::shared_ptr<NSTabView> tabsOf(const std::shared_ptr<NSView>& view)
    {
        if (auto tabs = std::dynamic_pointer_cast<NSTabView>(view))
            return tabs;
        for (const auto& subview : view->subviews()) {
            if (auto tabs = tabsOf(subview))
                return tabs;
        }
        return nullptr;
    }

    // Performs what a key does to the window as a whole. Returns false for other keys.
    bool performsCommand(NSWindow& window, const QKeyEvent& event)
    {
        const bool isTab = event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab;
        const auto tabs = isTab && event.modifiers() & Qt::ControlModifier ? tabsOf(window.contentView()) : nullptr;
        if (tabs)
            tabs->userSelectsTabViewItem(tabs->indexOfSelectedItem() + (event.key() == Qt::Key_Tab ? 1 : -1));
        else if (event.matches(QKeySequence::Undo) && !window.attachedSheet())
            window.undoManager().undo();
        else if (event.matches(QKeySequence::Redo) && !window.attachedSheet())
            window.undoManager().redo();
        else
            return false;
        return true;
    }

    void setAllNeedLayout(NSView& view)
    {
        view.setNeedsLayout();
        for (const auto& subview : view.subviews())
            setAllNeedLayout(*subview);
    }

} // namespace

WindowPresenter::WindowPresenter(NSWindow& window, WindowPresenter* parent, std::function<void()> lookChanged)
    : QWidget(parent, flagsOf(window, parent != nullptr)),
      window_(window.weak_from_this()),
      lookChanged_(std::move(lookChanged)),
      content_(makeViewPresenter(window.contentView(), *this)),
      dragDestination_(window.weak_from_this(), *this)
{
    // Windows are laid out from left to right for all, and their texts speak of the left and the right list.
    setLayoutDirection(Qt::LeftToRight);
    setAcceptDrops(true);
    setFont(ordinaryFont());
    setFocusPolicy(Qt::NoFocus);
    setWindowIcon(parent ? parent->windowIcon() : applicationIcon());
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { focusChanged(now); });
}

WindowPresenter::~WindowPresenter() = default;

void WindowPresenter::holdFor(WindowPresenter& sheet)
{
    shield_ = new SheetShield(*this, sheet);
}

void WindowPresenter::sheetEnded()
{
    delete shield_.data();
    setNeedsDisplay();
}

void WindowPresenter::retire()
{
    if (auto* parent = dynamic_cast<WindowPresenter*>(parentWidget()))
        parent->sheetEnded();
    window_.reset();
    hide();
    content_.reset();
    deleteLater();
}

// Showing

void WindowPresenter::setNeedsDisplay()
{
    if (std::exchange(isDisplayPosted_, true))
        return;
    QCoreApplication::postEvent(this, new QEvent(kDisplayEvent));
}

bool WindowPresenter::event(QEvent* event)
{
    if (event->type() == kDisplayEvent) {
        display();
        return true;
    }
    // The toolkit reports this change only to the window and not as one of its font, because the window has a font of
    // its own.
    if (event->type() == QEvent::ApplicationFontChange)
        layOutAnew();
    return QWidget::event(event);
}

void WindowPresenter::display()
{
    const auto window = window_.lock();
    if (!window)
        return;
    // Changes that the layout makes are shown now, so they must not ask for another display.
    isDisplayPosted_ = true;
    window->layoutIfNeeded();
    isDisplayPosted_ = false;
    showFrame(*window);
    content_->widget()->setGeometry(shownRect(window->contentView()->frame()));
    const QPointer<QWidget> focused = focusWidget();
    isShowing_ = true;
    content_->sync(makeViewPresenter);
    isShowing_ = false;
    content_->widget()->show();
    showFirstResponder(*window, focusWidget() != focused);
}

void WindowPresenter::showFrame(const NSWindow& window)
{
    setWindowTitle(QString::fromStdString(window.title()));
    const auto whole = [](NSSize wanted) {
        constexpr double kLargest = QWIDGETSIZE_MAX;
        return QSize(static_cast<int>(std::min(wanted.width, kLargest)),
                     static_cast<int>(std::min(wanted.height, kLargest)));
    };
    const QSize size = shownRect(window.contentView()->frame()).size();
    if (window.styleMask() & NSWindow::resizable) {
        setMinimumSize(whole(window.contentMinSize()));
        setMaximumSize(whole(window.contentMaxSize()));
        resize(size);
    } else {
        setFixedSize(size);
    }
}

void WindowPresenter::showFirstResponder(NSWindow& window, bool isLost)
{
    // While a sheet is on the window, the focus waits until the sheet has ended.
    if (shield_ || (!isLost && shownFirstResponder_ == window.firstResponderCount()))
        return;
    shownFirstResponder_ = window.firstResponderCount();
    const auto responder = window.firstResponder();
    ViewPresenter* presenter = responder ? content_->find(*responder) : nullptr;
    if (presenter)
        presenter->keyWidget()->setFocus(Qt::OtherFocusReason);
    else if (!responder && focusWidget())
        focusWidget()->clearFocus();
}

void WindowPresenter::orderFront()
{
    const auto window = window_.lock();
    if (!window)
        return;
    if (!isVisible()) {
        display();
        placeFirst(*window);
        if (!focusWidget())
            focusFirst();
        show();
        windowHandle()->installEventFilter(this);
        for (const QScreen* screen : QGuiApplication::screens())
            connect(screen, &QScreen::availableGeometryChanged, this, &WindowPresenter::followScreen);
    }
    if (isMinimized())
        showNormal();
    raise();
    activateWindow();
}

void WindowPresenter::focusFirst()
{
    // The first field to fill in gets the focus, otherwise the first control that is no text.
    QWidget* control = nullptr;
    for (QWidget* widget : keyWidgets(*this)) {
        if (auto* line = qobject_cast<QLineEdit*>(widget)) {
            line->setFocus(Qt::OtherFocusReason);
            line->selectAll();
            return;
        }
        if (!control && !widget->inherits("QTextEdit"))
            control = widget;
    }
    if (control)
        control->setFocus(Qt::OtherFocusReason);
}

void WindowPresenter::placeFirst(const NSWindow& window)
{
    if (std::exchange(isPlaced_, true))
        return;
    room_ = roomForContent(this);
    move(firstPlace(*this, window.sheetParent() ? parentWidget() : nullptr));
}

void WindowPresenter::followScreen()
{
    const auto window = window_.lock();
    const QSize room = roomForContent(this);
    if (!window || !isVisible() || !isOtherRoom(room, room_, size()))
        return;
    room_ = room;
    window->fitContent();
    setNeedsDisplay();
}

// What the desktop and the user do

void WindowPresenter::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::StyleChange:
    case QEvent::FontChange:
    case QEvent::PaletteChange:
        layOutAnew();
        break;
    default:
        break;
    }
}

void WindowPresenter::layOutAnew()
{
    const auto window = window_.lock();
    if (!window || !isVisible())
        return;
    setFont(ordinaryFont());
    lookChanged_();
    setAllNeedLayout(*window->contentView());
    window->fitContent();
    content_->forgetShown();
    setNeedsDisplay();
}

void WindowPresenter::closeEvent(QCloseEvent* event)
{
    // The model's window decides, and reports when it is closed.
    event->ignore();
    if (const auto window = window_.lock())
        window->performClose(nullptr);
}

void WindowPresenter::resizeEvent(QResizeEvent*)
{
    const auto window = window_.lock();
    if (!window || !isVisible())
        return;
    window->setContentSize({ static_cast<double>(width()), static_cast<double>(height()) });
    display();
}

void WindowPresenter::keyPressEvent(QKeyEvent* event)
{
    const auto window = window_.lock();
    char key = 0;
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        key = '\r';
    else if (event->key() == Qt::Key_Escape)
        key = '\x1b';
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    const auto button = window && isPlain && key ? buttonOf(window->contentView(), key) : nullptr;
    if (button)
        button->performClick();
    else if (!window || !performsCommand(*window, *event))
        event->ignore();
}

bool WindowPresenter::focusNextPrevChild(bool next)
{
    QWidget* widget = nextKeyWidget(*this, focusWidget(), next);
    if (!widget)
        return false;
    widget->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void WindowPresenter::focusChanged(QWidget* now)
{
    // The toolkit reports that a window gets or loses the keyboard focus outside of the events that it delivers.
    const NSApplication::EventScope event;
    const auto window = window_.lock();
    if (isShowing_ || !window || !now || now->window() != this)
        return;
    ViewPresenter* presenter = content_->find(now);
    if (!presenter)
        return;
    // The widget may be about to go, its view gone before it.
    const auto view = presenter->view();
    if (!view || view->window() != window)
        return;
    window->userFocuses(view);
    // What is under the mouse stays there, so that a click ends where it began.
    if (QGuiApplication::mouseButtons() == Qt::NoButton)
        view->scrollToVisible();
}

bool WindowPresenter::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseMove || event->type() == QEvent::MouseButtonPress)
        dragDestination_.pointerCame();
    return QWidget::eventFilter(watched, event);
}

void WindowPresenter::dragEnterEvent(QDragEnterEvent* event)
{
    dragDestination_.enter(*event);
    // Another place on the window may have a view that accepts the drag.
    if (!event->isAccepted()) {
        event->setDropAction(Qt::IgnoreAction);
        event->accept();
    }
}

void WindowPresenter::dragMoveEvent(QDragMoveEvent* event)
{
    dragDestination_.move(*event);
}

void WindowPresenter::dragLeaveEvent(QDragLeaveEvent*)
{
    dragDestination_.leave();
}

void WindowPresenter::dropEvent(QDropEvent* event)
{
    dragDestination_.drop(*event);
}

} // namespace quillbox
