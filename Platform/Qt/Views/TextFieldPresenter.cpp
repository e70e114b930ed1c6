#include "TextFieldPresenter.h"

#include "Appearance.h"
#include "SelectableText.h"
#include "TextLabel.h"

#include <QApplication>
#include <QDesktopServices>
#include <QLineEdit>
#include <QUrl>

namespace quillbox {

namespace {

    // Converts a position in a text: the model counts bytes, the toolkit UTF-16 units.
    int shownPlace(const std::string& text, std::size_t place)
    {
        return static_cast<int>(
            QString::fromUtf8(text.data(), static_cast<qsizetype>(std::min(place, text.size()))).size());
    }

    void select(QWidget& widget, int begin, int end)
    {
        if (auto* text = qobject_cast<QTextEdit*>(&widget)) {
            QTextCursor cursor(text->document());
            cursor.setPosition(begin);
            cursor.setPosition(end, QTextCursor::KeepAnchor);
            text->setTextCursor(cursor);
        } else if (auto* line = qobject_cast<QLineEdit*>(&widget)) {
            if (begin == end)
                line->setCursorPosition(begin);
            else
                line->setSelection(begin, end - begin);
        }
    }

    // Scrolls to the caret, where the user is working.
    void scrollToCaret(NSView& view, const QTextEdit& text)
    {
        const QRect caret = text.cursorRect();
        const NSRect inView { { static_cast<double>(caret.x()), static_cast<double>(caret.y()) },
                              { static_cast<double>(caret.width()), static_cast<double>(caret.height()) } };
        view.scrollRectToVisible(inView);
    }

    QWidget* makeSelectable(const std::shared_ptr<NSTextField>& field, QWidget& parent)
    {
        auto* text = new SelectableText(&parent);
        QObject::connect(text, &QTextBrowser::anchorClicked, text,
                         [](const QUrl& address) { QDesktopServices::openUrl(address); });
        QObject::connect(text, &QTextEdit::cursorPositionChanged, text,
                         [text, shown = std::weak_ptr<NSTextField>(field)] {
                             if (const auto known = shown.lock(); known && text->hasFocus())
                                 scrollToCaret(*known, *text);
                         });
        return text;
    }

    QWidget* makeEditable(const std::shared_ptr<NSTextField>& field, QWidget& parent)
    {
        auto* line = new QLineEdit(&parent);
        // This signal also comes for text from assistive technologies and on-screen keyboards, which the widget does
        // not count as edits.
        QObject::connect(line, &QLineEdit::textChanged, line,
                         [shown = std::weak_ptr<NSTextField>(field)](const QString& text) {
                             const auto known = shown.lock();
                             if (known && known->stringValue() != text.toStdString())
                                 known->userEdits(text.toStdString());
                         });
        return line;
    }

} // namespace

TextFieldPresenter::Kind TextFieldPresenter::kindOf(const NSTextField& field)
{
    if (field.isEditable())
        return Kind::editable;
    return field.isSelectable() ? Kind::selectable : Kind::label;
}

QWidget* TextFieldPresenter::makeWidget(const std::shared_ptr<NSTextField>& field, QWidget& parent)
{
    switch (kindOf(*field)) {
    case Kind::selectable:
        return makeSelectable(field, parent);
    case Kind::editable:
        return makeEditable(field, parent);
    case Kind::label:
        break;
    }
    return new TextLabel(&parent);
}

TextFieldPresenter::TextFieldPresenter(const std::shared_ptr<NSTextField>& field, QWidget& parent)
    : ViewPresenter(field, makeWidget(field, parent)),
      kind_(kindOf(*field))
{
}

bool TextFieldPresenter::suits(const NSView& view) const
{
    return kindOf(dynamic_cast<const NSTextField&>(view)) == kind_;
}

void TextFieldPresenter::showContent(NSView& view)
{
    const auto& field = dynamic_cast<const NSTextField&>(view);
    const AttributedString& text = field.attributedStringValue();
    widget()->setFont(shownFont(field.font(), ordinaryFont()));
    widget()->setEnabled(field.isEnabled());
    switch (kind_) {
    case Kind::label: {
        auto* label = static_cast<TextLabel*>(widget());
        label->showText(text, field.maximumNumberOfLines() == 1);
        label->setOwnColour(field.textColor() == CGColor::label
                                ? std::nullopt
                                : std::optional(shownColour(field.textColor(), QApplication::palette())));
        break;
    }
    case Kind::selectable:
        static_cast<SelectableText*>(widget())->showText(text, field.reflowsParagraphs());
        break;
    case Kind::editable: {
        auto* line = static_cast<QLineEdit*>(widget());
        line->setFrame(field.isBezeled());
        // Text that the user has typed is not set again, so that it keeps its undo steps.
        if (const QString shown = QString::fromStdString(text.string()); line->text() != shown)
            line->setText(shown);
        break;
    }
    }
}

void TextFieldPresenter::subviewsShown(NSView& view)
{
    const auto& field = dynamic_cast<const NSTextField&>(view);
    if (field.editor().changeCount() == shownSelection_)
        return;
    shownSelection_ = field.editor().changeCount();
    const std::string text = field.stringValue();
    const NSRange range = field.editor().selectedRange();
    select(*widget(), shownPlace(text, range.location), shownPlace(text, range.location + range.length));
}

} // namespace quillbox
