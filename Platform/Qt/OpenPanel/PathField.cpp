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
    setToolTip(QStringLiteral("Ctrl+L"));
    auto* completer = new QCompleter(continuations_, this);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    setCompleter(completer);
    completer->popup()->installEventFilter(this);
    connect(this, &QLineEdit::textEdited, this, &PathField::wasEdited);
    // Assistive technologies and on-screen keyboards set the text without that signal. A continuation that is marked in
    // the list comes into the field, too, but is not chosen yet.
    connect(this, &QLineEdit::textChanged, this, [this] {
        if (text() != knownText_ && !this->completer()->popup()->isVisible())
            wasEdited();
    });
    // The field has the text of a continuation that was clicked in the list only after this signal.
    connect(completer, qOverload<const QString&>(&QCompleter::activated), this, &PathField::wasEdited,
            Qt::QueuedConnection);
}

void PathField::setDirectory(const std::string& directory)
{
    directory_ = directory;
    isEdited_ = false;
    continued_.reset();
    knownText_ = typedText(directory);
    setText(knownText_);
}

std::string PathField::path() const
{
    return typedPath(text(), directory_);
}

void PathField::type(const QString& text)
{
    knownText_ = text;
    setText(text);
    wasEdited();
}

void PathField::setShowsHidden(bool shows)
{
    showsHidden_ = shows;
    continued_.reset();
}

void PathField::wasEdited()
{
    isEdited_ = true;
    knownText_ = text();
    lookForContinuations();
    onEdited();
}

void PathField::lookForContinuations()
{
    const QString typed = text();
    const qsizetype nameStart = typed.lastIndexOf(QChar('/')) + 1;
    const bool isDotTyped = typed.mid(nameStart).startsWith(QChar('.'));
    // A dot more or less in the same directory makes others of them.
    const QString begun = typed.left(nameStart + (isDotTyped ? 1 : 0));
    if (continued_ == begun)
        return;
    continued_ = begun;
    continuations_->setStringList(typedContinuations(typed, directory_, showsHidden_));
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
    if (!common)
        return;
    type(*common);
    completer()->setCompletionPrefix(*common);
    completer()->complete();
}

void PathField::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isForDialog = event->modifiers().testFlag(Qt::ControlModifier);
    if (!isReturn || isForDialog)
        return QLineEdit::keyPressEvent(event);
    // The field alone would hand Return on to the dialog's default button, too. A continuation that is marked in the
    // list is in the field already.
    completer()->popup()->hide();
    onReturn();
}

bool PathField::eventFilter(QObject*, QEvent* event)
{
    if (event->type() != QEvent::KeyPress || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Tab)
        return false;
    continueTyping();
    return true;
}

} // namespace quillbox
