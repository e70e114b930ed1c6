#include "SheetShield.h"

#include <QCoreApplication>
#include <QEvent>

namespace quillbox {

namespace {
    constexpr const char* kIsSheet = "quillboxIsSheet";
} // namespace

SheetShield::SheetShield(QWidget& window, QWidget& sheet)
    : QWidget(&window),
      sheet_(&sheet),
      hadFocus_(window.focusWidget())
{
    sheet.setProperty(kIsSheet, true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::ArrowCursor);
    setGeometry(window.rect());
    window.installEventFilter(this);
    raise();
    show();
    setFocus(Qt::OtherFocusReason);
}

SheetShield::~SheetShield()
{
    if (hadFocus_ && hadFocus_->isVisible())
        hadFocus_->setFocus(Qt::OtherFocusReason);
}

bool SheetShield::isSheet(const QWidget& widget)
{
    return widget.property(kIsSheet).toBool();
}

void SheetShield::bringSheetForward()
{
    if (!sheet_)
        return;
    sheet_->raise();
    sheet_->activateWindow();
}

bool SheetShield::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    else if (event->type() == QEvent::WindowActivate)
        bringSheetForward();
    return false;
}

bool SheetShield::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        bringSheetForward();
        [[fallthrough]];
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::ToolTip:
        event->accept();
        return true;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        // The key was pressed before the keyboard focus came to the sheet.
        bringSheetForward();
        if (sheet_)
            QCoreApplication::sendEvent(sheet_->focusWidget() ? sheet_->focusWidget() : sheet_.data(), event);
        event->accept();
        return true;
    default:
        return QWidget::event(event);
    }
}

} // namespace quillbox
