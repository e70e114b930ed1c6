#include "ButtonPresenter.h"

#include "Appearance.h"
#include "CheckBox.h"
#include "ImageButton.h"

#include <QKeyEvent>
#include <QPushButton>

namespace quillbox {

namespace {

    bool isReturn(const QKeyEvent& event)
    {
        return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    }

    // A button that Return presses as Space does.
    class PushButton final : public QPushButton {
    public:
        using QPushButton::QPushButton;

    protected:
        void keyPressEvent(QKeyEvent* event) override
        {
            if (isReturn(*event))
                click();
            else
                QPushButton::keyPressEvent(event);
        }
    };

} // namespace

ButtonPresenter::Kind ButtonPresenter::kindOf(const NSButton& button)
{
    if (button.buttonType() == NSButton::ButtonType::switchButton)
        return Kind::checkbox;
    return button.imagePosition() == NSButton::ImagePosition::imageOnly ? Kind::picture : Kind::push;
}

QWidget* ButtonPresenter::makeWidget(const std::shared_ptr<NSButton>& button, QWidget& parent)
{
    QAbstractButton* widget = nullptr;
    switch (kindOf(*button)) {
    case Kind::push: {
        auto* push = new PushButton(&parent);
        push->setAutoDefault(false);
        widget = push;
        break;
    }
    case Kind::checkbox:
        widget = new CheckBox(&parent);
        break;
    case Kind::picture:
        widget = new ImageButton(&parent);
        break;
    }
    QObject::connect(widget, &QAbstractButton::clicked, widget, [widget, pressed = std::weak_ptr<NSButton>(button)] {
        const auto known = pressed.lock();
        if (!known)
            return;
        // The action may close the window, but the widget exists until the event has ended.
        known->performClick();
        if (widget->isCheckable())
            widget->setChecked(known->isOn());
    });
    return widget;
}

ButtonPresenter::ButtonPresenter(const std::shared_ptr<NSButton>& button, QWidget& parent)
    : ViewPresenter(button, makeWidget(button, parent)),
      kind_(kindOf(*button))
{
}

bool ButtonPresenter::suits(const NSView& view) const
{
    return kindOf(dynamic_cast<const NSButton&>(view)) == kind_;
}

void ButtonPresenter::showContent(NSView& view)
{
    const auto& button = dynamic_cast<const NSButton&>(view);
    const QString title = QString::fromStdString(button.title());
    auto* widget = static_cast<QAbstractButton*>(this->widget());
    widget->setEnabled(button.isEnabled());
    if (kind_ == Kind::picture) {
        if (button.accessibilityLabel().empty())
            widget->setAccessibleName(title);
        static_cast<ImageButton*>(widget)->showImage(button.image().value_or(NSImage()), button.imageScaling());
        return;
    }
    widget->setFont(shownFont(button.font(), ordinaryFont()));
    const QString shownTitle = QString(title).replace(QChar('&'), QStringLiteral("&&"));
    if (kind_ == Kind::checkbox) {
        static_cast<CheckBox*>(widget)->showTitle(shownTitle);
        widget->setChecked(button.isOn());
    } else {
        auto* push = static_cast<QPushButton*>(widget);
        push->setText(shownTitle);
        push->setFlat(!button.isBordered());
        push->setDefault(button.keyEquivalent().find('\r') != std::string::npos);
    }
}

} // namespace quillbox
