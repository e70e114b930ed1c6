#include "NarrowingLine.h"

#include <QKeyEvent>

namespace quillbox {

NarrowingLine::NarrowingLine(QWidget& popup, const NSMenu& menu, std::function<void(QKeyEvent&)> keyPressed)
    : QLineEdit(&popup),
      search_(menu),
      keyPressed_(std::move(keyPressed))
{
    setPlaceholderText(QStringLiteral("Narrow"));
    setAccessibleName(QStringLiteral("Narrow"));
    setContextMenuPolicy(Qt::NoContextMenu); // It would be one popup too many.
    setFont(popup.font());
}

bool NarrowingLine::type(QKeyEvent& event)
{
    const bool isCommand = event.modifiers() & Qt::ControlModifier;
    const bool isErasing = event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete;
    const bool isText = !event.text().isEmpty() && event.text().front().isPrint()
        && !(event.modifiers() & (Qt::AltModifier | Qt::MetaModifier));
    if (!isCommand && !isErasing && !isText)
        return false;
    // An event sent to the line would come back through the popup if the line has no use for the key.
    keyPressEvent(&event);
    return true;
}

std::optional<TitleSearch::Rows> NarrowingLine::rows() const
{
    return text().isEmpty() ? std::nullopt : std::optional(search_.rowsContaining(text()));
}

bool NarrowingLine::event(QEvent* event)
{
    // No shortcut of our windows may take a key from an open menu.
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::KeyPress) {
        keyPressed_(static_cast<QKeyEvent&>(*event));
        return true;
    }
    return QLineEdit::event(event);
}

} // namespace quillbox
