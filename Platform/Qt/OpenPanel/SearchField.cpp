#include "SearchField.h"

#include <QKeyEvent>

namespace quillbox {

namespace {

    constexpr int kCharactersWide = 18;
    constexpr float kFaintness = 0.6F;

} // namespace

SearchField::SearchField(QWidget* parent) : QLineEdit(parent)
{
    setAccessibleName(QStringLiteral("Search"));
    setPlaceholderText(QStringLiteral("Search"));
    setToolTip(QStringLiteral("Finds what is in this directory (Ctrl+F, or type in the list)"));
    setClearButtonEnabled(true);
    // Dark palettes of some desktops leave the toolkit's own colour for this, which is black.
    QPalette colours = palette();
    QColor faint = colours.color(QPalette::Text);
    faint.setAlphaF(kFaintness);
    colours.setColor(QPalette::PlaceholderText, faint);
    setPalette(colours);
    setMaximumWidth(fontMetrics().averageCharWidth() * kCharactersWide);
}

void SearchField::type(const QString& more)
{
    setFocus();
    end(false);
    insert(more);
}

void SearchField::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return onReturn();
    case Qt::Key_Escape:
        // Only an empty field leaves it to the dialog.
        if (text().isEmpty())
            break;
        clear();
        return onEnd();
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return onMove(*event);
    default:
        break;
    }
    QLineEdit::keyPressEvent(event);
}

} // namespace quillbox
