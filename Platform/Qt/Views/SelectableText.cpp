#include "SelectableText.h"

#include "Appearance.h"

#include <QApplication>
#include <QEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace quillbox {

namespace {
    constexpr int kNarrowest = 280;
} // namespace

SelectableText::SelectableText(QWidget* parent) : QTextBrowser(parent)
{
    setReadOnly(true);
    setOpenLinks(false);
    setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
    setFocusPolicy(Qt::StrongFocus);
    setTabChangesFocus(true);
    setAcceptDrops(false);
    setFrameShape(QFrame::NoFrame);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    document()->setDocumentMargin(0);
}

void SelectableText::showText(const AttributedString& text, bool reflowsParagraphs)
{
    text_ = text;
    reflowsParagraphs_ = reflowsParagraphs;
    followTheme();
    setAccessibleName(QString::fromStdString(text.string()));
    fill();
}

void SelectableText::fill()
{
    const int caret = textCursor().position();
    const int anchor = textCursor().anchor();
    setDocumentText(*document(), text_, font(), shownLinkColour(QApplication::palette(this)));
    if (reflowsParagraphs_) {
        reflowParagraphs(*document(), width());
        document()->setTextWidth(width());
    }
    const int last = document()->characterCount() - 1;
    QTextCursor cursor(document());
    cursor.setPosition(std::min(anchor, last));
    cursor.setPosition(std::min(caret, last), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

void SelectableText::followTheme()
{
    QPalette colours = QApplication::palette(this);
    colours.setColor(QPalette::Base, Qt::transparent);
    for (const auto group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled })
        colours.setColor(group, QPalette::Text, colours.color(group, QPalette::WindowText));
    setPalette(colours);
}

void SelectableText::changeEvent(QEvent* event)
{
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        fill();
}

void SelectableText::resizeEvent(QResizeEvent* event)
{
    QTextBrowser::resizeEvent(event);
    if (reflowsParagraphs_ && event->size().width() != event->oldSize().width())
        fill();
}

void SelectableText::wheelEvent(QWheelEvent* event)
{
    // The surrounding scroll view scrolls.
    if (verticalScrollBarPolicy() == Qt::ScrollBarAlwaysOff)
        event->ignore();
    else
        QTextBrowser::wheelEvent(event);
}

int SelectableText::heightForWidth(int width) const
{
    // A separate document is measured, because the width of this one is what is shown.
    QTextDocument measured;
    setDocumentText(measured, text_, font(), Qt::black);
    measured.setTextWidth(width);
    return static_cast<int>(std::ceil(measured.size().height()));
}

QSize SelectableText::sizeHint() const
{
    return { kNarrowest, heightForWidth(kNarrowest) };
}

} // namespace quillbox
