#include "WindowAccessible.h"

#include "ImageViewPresenter.h"
#include "KeyViewLoop.h"
#include "LayerOverlay.h"
#include "ScrollViewPresenter.h"
#include "SheetShield.h"
#include "TableViewAccessible.h"
#include "TableViewWidget.h"
#include "TextLabel.h"
#include "WindowPresenter.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QComboBox>

#include <algorithm>

namespace quillbox {

namespace {

    class LabelAccessible final : public QAccessibleWidget {
    public:
        explicit LabelAccessible(TextLabel& label) : QAccessibleWidget(&label, QAccessible::StaticText) { }

        QString text(QAccessible::Text kind) const override
        {
            const auto* label = static_cast<const TextLabel*>(widget());
            return kind == QAccessible::Name && label->accessibleName().isEmpty() ? label->text()
                                                                                  : QAccessibleWidget::text(kind);
        }
    };

    // The toolkit's own interface gives the chosen value instead of the name.
    class PopUpAccessible final : public QAccessibleWidget {
    public:
        explicit PopUpAccessible(QComboBox& box) : QAccessibleWidget(&box, QAccessible::ComboBox) { }

        int childCount() const override { return 1; }
        QAccessibleInterface* child(int index) const override
        {
            return index == 0 ? QAccessible::queryAccessibleInterface(box().view()) : nullptr;
        }
        int indexOfChild(const QAccessibleInterface* child) const override
        {
            return child && child->object() == box().view() ? 0 : -1;
        }
        QString text(QAccessible::Text kind) const override
        {
            return kind == QAccessible::Value ? box().currentText() : QAccessibleWidget::text(kind);
        }
        QAccessible::State state() const override
        {
            QAccessible::State state = QAccessibleWidget::state();
            state.expandable = state.hasPopup = true;
            state.expanded = box().view()->isVisible();
            state.collapsed = !state.expanded;
            return state;
        }
        QStringList actionNames() const override { return { showMenuAction(), pressAction() }; }
        void doAction(const QString&) override
        {
            if (box().view()->isVisible())
                box().hidePopup();
            else
                box().showPopup();
        }

    private:
        QComboBox& box() const { return *static_cast<QComboBox*>(widget()); }
    };

    // A window, a sheet, or an area of one. Its children are in the order in which people read, not in that of their
    // making.
    class AreaAccessible final : public QAccessibleWidget {
    public:
        using QAccessibleWidget::QAccessibleWidget;

        int childCount() const override { return static_cast<int>(inside().size()); }
        QAccessibleInterface* child(int index) const override
        {
            const std::vector<QWidget*> widgets = inside();
            return index >= 0 && index < static_cast<int>(widgets.size())
                ? QAccessible::queryAccessibleInterface(widgets[static_cast<std::size_t>(index)])
                : nullptr;
        }
        int indexOfChild(const QAccessibleInterface* child) const override
        {
            const std::vector<QWidget*> widgets = inside();
            const auto found = std::find(widgets.begin(), widgets.end(), child ? child->object() : nullptr);
            return found == widgets.end() ? -1 : static_cast<int>(found - widgets.begin());
        }
        QAccessible::State state() const override
        {
            QAccessible::State state = QAccessibleWidget::state();
            state.modal = SheetShield::isSheet(*widget());
            return state;
        }

    private:
        std::vector<QWidget*> inside() const
        {
            std::vector<QWidget*> widgets;
            for (QObject* child : widget()->children()) {
                auto* inside = qobject_cast<QWidget*>(child);
                if (inside && !inside->isWindow() && !inside->isHidden() && !dynamic_cast<SheetShield*>(inside)
                    && !dynamic_cast<LayerOverlay*>(inside))
                    widgets.push_back(inside);
            }
            sortAsRead(widgets);
            return widgets;
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
        // A scroll view is reported as a pane, though its widget is a frame.
        if (auto* area = dynamic_cast<ScrollViewWidget*>(object))
            return new QAccessibleWidget(area, QAccessible::Pane);
        if (auto* image = dynamic_cast<ImageWidget*>(object))
            return new QAccessibleWidget(image, QAccessible::Graphic);
        if (auto* window = dynamic_cast<WindowPresenter*>(object))
            return new AreaAccessible(window, window->parentWidget() ? QAccessible::Dialog : QAccessible::Window);
        if (widget && widget->isWindow() && SheetShield::isSheet(*widget))
            return new AreaAccessible(widget, QAccessible::Dialog);
        if (!widget || !dynamic_cast<WindowPresenter*>(widget->window()))
            return nullptr;
        if (auto* box = qobject_cast<QComboBox*>(widget))
            return new PopUpAccessible(*box);
        // This widget shows a plain view that is no control.
        if (widget->metaObject() == &QWidget::staticMetaObject && !dynamic_cast<SheetShield*>(widget))
            return new AreaAccessible(widget, QAccessible::Grouping);
        return nullptr;
    }

} // namespace

void installWindowAccessibility()
{
    QAccessible::installFactory(makeInterface);
}

} // namespace quillbox
