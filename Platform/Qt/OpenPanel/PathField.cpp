#include "PathField.h"

#include "TypedPath.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QStringListModel>

#include <algorithm>

namespace quillbox {

PathField::PathField(QWidget* parent) : QLineEdit(parent), continuations_(new QStringListModel(this))
{
    setAccessibleName(QStringLiteral("Path"));
    auto* completer = new QCompleter(continuations_, this);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    setCompleter(completer);
    completer->popup()->installEventFilter(this);
    connect(this, &QLineEdit::textEdited, this, &PathField::wasEdited);
    connect(this, &QLineEdit::returnPressed, this, [this] { onReturn(); });
    // The field has the text of a continuation that was picked from the list only after this signal. Return may have
    // entered the directory by then, which is no editing.
    connect(
        completer, qOverload<const QString&>(&QCompleter::activated), this,
        [this] {
            if (path() == directory_)
                setDirectory(directory_);
            else
                wasEdited();
        },
        Qt::QueuedConnection);
}

void PathField::setDirectory(const std::string& directory)
{
    directory_ = directory;
    continued_.reset();
    setText(typedText(directory));
}

std::string PathField::path() const
{
    return typedPath(text(), directory_);
}

void PathField::type(const QString& text)
{
    setFocus();
    setText(text);
    wasEdited();
    completer()->setCompletionPrefix(text);
    completer()->complete();
}

void PathField::wasEdited()
{
    const QString typed = text();
    const QString begun = typed.left(typed.lastIndexOf(QChar('/')) + 1) + (typed.contains("/.") ? "." : "");
    if (continued_ != begun) {
        continued_ = begun;
        continuations_->setStringList(typedContinuations(typed, directory_));
    }
    onEdited();
}

void PathField::continueTyping()
{
    const QString typed = text();
    std::optional<QString> common;
    for (const QString& continuation : continuations_->stringList()) {
        if (!continuation.startsWith(typed, Qt::CaseInsensitive))
            continue;
        qsizetype length = typed.size();
        while (common && length < std::min(common->size(), continuation.size())
               && (*common)[length] == continuation[length])
            ++length;
        common = common ? common->left(length) : continuation;
    }
    if (common)
        type(*common);
}

void PathField::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isForDialog = event->modifiers().testFlag(Qt::ControlModifier);
    // The field alone would hand Return on to the dialog's default button, too. While the list of continuations is
    // shown, the completer needs the key.
    if (isReturn && !isForDialog && !completer()->popup()->isVisible())
        return onReturn();
    QLineEdit::keyPressEvent(event);
}

bool PathField::eventFilter(QObject*, QEvent* event)
{
    if (event->type() != QEvent::KeyPress || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Tab)
        return false;
    continueTyping();
    return true;
}

} // namespace quillbox
