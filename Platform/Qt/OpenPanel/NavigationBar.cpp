#include "NavigationBar.h"

#include "PathField.h"
#include "SearchField.h"

#include <QHBoxLayout>
#include <QShortcut>
#include <QToolButton>

namespace quillbox {

NavigationBar::NavigationBar(QWidget* parent)
    : QWidget(parent),
      back_(makeButton("go-previous", QStyle::SP_ArrowBack, "Back", "Alt+Left")),
      up_(makeButton("go-up", QStyle::SP_ArrowUp, "Up", "Alt+Up")),
      path_(new PathField(this)),
      search_(new SearchField(this))
{
    connect(back_, &QToolButton::clicked, this, [this] { onBack(); });
    connect(up_, &QToolButton::clicked, this, [this] { onUp(); });
    for (QLineEdit* field : std::initializer_list<QLineEdit*> { path_, search_ }) {
        const QKeySequence key(field == path_ ? QStringLiteral("Ctrl+L") : QStringLiteral("Ctrl+F"));
        connect(new QShortcut(key, this), &QShortcut::activated, field, [field] {
            field->setFocus();
            field->selectAll();
        });
    }
    auto* across = new QHBoxLayout(this);
    across->setContentsMargins({});
    across->addWidget(back_);
    across->addWidget(up_);
    across->addWidget(path_, 1);
    across->addWidget(search_);
}

QToolButton* NavigationBar::makeButton(const char* iconName, QStyle::StandardPixmap icon, const char* name,
                                       const char* key)
{
    auto* button = new QToolButton(this);
    button->setIcon(QIcon::fromTheme(QString::fromLatin1(iconName), style()->standardIcon(icon)));
    const QString keyText = QString::fromLatin1(key);
    button->setToolTip(QStringLiteral("%1 (%2)").arg(QString::fromLatin1(name), keyText));
    button->setShortcut(QKeySequence(keyText));
    button->setAccessibleName(QString::fromLatin1(name));
    button->setAutoRaise(true);
    return button;
}

void NavigationBar::setWays(bool canGoBack, bool canGoUp)
{
    back_->setEnabled(canGoBack);
    up_->setEnabled(canGoUp);
}

} // namespace quillbox
