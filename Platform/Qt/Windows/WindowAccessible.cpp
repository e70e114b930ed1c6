#include "WindowAccessible.h"

#include "ImageViewPresenter.h"
#include "ScrollViewPresenter.h"
#include "TableViewAccessible.h"
#include "TableViewWidget.h"
#include "TextLabel.h"
#include "WindowPresenter.h"

#include <QAccessibleWidget>

namespace quillbox {

namespace {

    class LabelAccessible final : public QAccessibleWidget {
    public:
        explicit LabelAccessible(TextLabel& label) : QAccessibleWidget(&label, QAccessible::StaticText) { }

        QString text(QAccessible::Text kind) const override
        {
            const auto* label = static_cast<const TextLabel*>(widget());
            return kind == QAccessible::Name ? label->text() : QAccessibleWidget::text(kind);
        }
    };

    QAccessibleInterface* makeInterface(const QString&, QObject* object)
    {
        if (auto* table = dynamic_cast<TableViewWidget*>(object))
            return new TableViewAccessible(*table);
        auto* widget = qobject_cast<QWidget*>(object);
        if (widget && dynamic_cast<TableViewWidget*>(widget->parentWidget()))
            return makeRowAccessible(*widget);
        if (auto* label = dynamic_cast<TextLabel*>(object))
            return new LabelAccessible(*label);
        // Not the frame that it looks like.
        if (auto* area = dynamic_cast<ScrollViewWidget*>(object))
            return new QAccessibleWidget(area, QAccessible::Pane);
        if (auto* image = dynamic_cast<ImageWidget*>(object))
            return new QAccessibleWidget(image, QAccessible::Graphic);
        if (auto* window = dynamic_cast<WindowPresenter*>(object))
            return new QAccessibleWidget(window, window->parentWidget() ? QAccessible::Dialog : QAccessible::Window);
        return nullptr;
    }

} // namespace

void installWindowAccessibility()
{
    QAccessible::installFactory(makeInterface);
}

} // namespace quillbox
