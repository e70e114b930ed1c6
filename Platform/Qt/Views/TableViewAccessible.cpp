#include "TableViewAccessible.h"

#include <QPointer>

namespace quillbox {

namespace {

    QString nameOf(const TableViewWidget& widget, int row)
    {
        const auto table = widget.table();
        return table ? QString::fromStdString(table->textOfRow(row)) : QString();
    }

    QAccessible::State stateOf(const TableViewWidget& widget, int row)
    {
        QAccessible::State state;
        const auto table = widget.table();
        if (!table || row < 0 || row >= table->numberOfRows()) {
            state.invalid = true;
            return state;
        }
        state.selectable = state.focusable = state.multiSelectable = table->mayBeSelected(row);
        state.selected = table->selectedRowIndexes().contains(row);
        state.focused = widget.hasFocus() && table->leadRow() == row;
        state.invisible = !widget.isVisible();
        state.offscreen = !widget.rowWidget(row);
        return state;
    }

    // Selects only this row, as a click would, or performs one of the commands that keys perform.
    class RowActions : public QAccessibleActionInterface {
    public:
        QStringList actionNames() const override
        {
            QStringList names { pressAction() };
            const auto table = tableOfRow().table();
            for (const auto command : NSTableView::kCommands) {
                if (table && table->canPerform(command, row()))
                    names.append(QString::fromUtf8(NSTableView::titleOf(command)));
            }
            return names;
        }
        QString localizedActionName(const QString& name) const override
        {
            return name == pressAction() ? QAccessibleActionInterface::localizedActionName(name) : name;
        }
        QString localizedActionDescription(const QString& name) const override
        {
            return name == pressAction() ? QAccessibleActionInterface::localizedActionDescription(name) : name;
        }
        QStringList keyBindingsForAction(const QString&) const override { return {}; }
        void doAction(const QString& name) override
        {
            const auto table = tableOfRow().table();
            if (!table)
                return;
            if (name == pressAction())
                table->userSelects(row());
            for (const auto command : NSTableView::kCommands) {
                if (name == QString::fromUtf8(NSTableView::titleOf(command)))
                    table->userPerforms(command, row());
            }
        }

        virtual int row() const = 0;
        virtual const TableViewWidget& tableOfRow() const = 0;
    };

    class RowInSight final : public QAccessibleWidget, public RowActions {
    public:
        explicit RowInSight(QWidget& row) : QAccessibleWidget(&row, QAccessible::ListItem) { }

        int row() const override { return tableOfRow().rowOf(widget()); }
        const TableViewWidget& tableOfRow() const override
        {
            return *static_cast<const TableViewWidget*>(widget()->parentWidget());
        }
        QString text(QAccessible::Text kind) const override
        {
            return kind == QAccessible::Name ? nameOf(tableOfRow(), row()) : QAccessibleWidget::text(kind);
        }
        QAccessible::State state() const override { return stateOf(tableOfRow(), row()); }
        void doAction(const QString& name) override { RowActions::doAction(name); }
        QStringList actionNames() const override { return RowActions::actionNames(); }
        QString localizedActionName(const QString& name) const override
        {
            return RowActions::localizedActionName(name);
        }
        QString localizedActionDescription(const QString& name) const override
        {
            return RowActions::localizedActionDescription(name);
        }
        QStringList keyBindingsForAction(const QString& name) const override
        {
            return RowActions::keyBindingsForAction(name);
        }
        void* interface_cast(QAccessible::InterfaceType type) override
        {
            return type == QAccessible::ActionInterface ? static_cast<RowActions*>(this)
                                                        : QAccessibleWidget::interface_cast(type);
        }
    };

    class RowOutOfSight final : public QAccessibleInterface, public RowActions {
    public:
        RowOutOfSight(TableViewWidget& table, int row) : table_(table), row_(row) { }

        int row() const override { return row_; }
        const TableViewWidget& tableOfRow() const override { return table_; }
        bool isValid() const override { return !state().invalid; }
        // Such a row is no QObject.
        QObject* object() const override { return nullptr; }
        QWindow* window() const override { return table_.window()->windowHandle(); }
        QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&table_); }
        QAccessibleInterface* child(int) const override { return nullptr; }
        QAccessibleInterface* childAt(int, int) const override { return nullptr; }
        int childCount() const override { return 0; }
        int indexOfChild(const QAccessibleInterface*) const override { return -1; }
        void setText(QAccessible::Text, const QString&) override { }
        QRect rect() const override { return {}; }
        QAccessible::Role role() const override { return QAccessible::ListItem; }
        QString text(QAccessible::Text kind) const override
        {
            return kind == QAccessible::Name ? nameOf(table_, row_) : QString();
        }
        QAccessible::State state() const override { return stateOf(table_, row_); }
        void* interface_cast(QAccessible::InterfaceType type) override
        {
            return type == QAccessible::ActionInterface ? static_cast<RowActions*>(this) : nullptr;
        }

    private:
        TableViewWidget& table_;
        int row_;
    };

} // namespace

TableViewAccessible::TableViewAccessible(TableViewWidget& widget) : QAccessibleWidget(&widget, QAccessible::List) { }

TableViewAccessible::~TableViewAccessible()
{
    for (const auto& [row, id] : outOfSight_)
        QAccessible::deleteAccessibleInterface(id);
}

int TableViewAccessible::childCount() const
{
    const auto shown = table().table();
    return shown ? shown->numberOfRows() : 0;
}

QAccessibleInterface* TableViewAccessible::child(int row) const
{
    if (row < 0 || row >= childCount())
        return nullptr;
    if (QWidget* inSight = table().rowWidget(row))
        return QAccessible::queryAccessibleInterface(inSight);
    const auto known = outOfSight_.find(row);
    if (known != outOfSight_.end())
        return QAccessible::accessibleInterface(known->second);
    auto* made = new RowOutOfSight(table(), row);
    outOfSight_.emplace(row, QAccessible::registerAccessibleInterface(made));
    return made;
}

int TableViewAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    if (const auto* outOfSight = dynamic_cast<const RowOutOfSight*>(child))
        return outOfSight->row();
    const auto* inSight = dynamic_cast<const RowInSight*>(child);
    return inSight ? inSight->row() : -1;
}

QAccessibleInterface* TableViewAccessible::childAt(int x, int y) const
{
    const auto shown = table().table();
    const QPoint inside = table().mapFromGlobal(QPoint(x, y));
    return shown && table().rect().contains(inside) ? child(shown->rowAtPoint({ 0, static_cast<double>(inside.y()) }))
                                                    : nullptr;
}

QAccessibleInterface* TableViewAccessible::focusChild() const
{
    const auto shown = table().table();
    return shown && table().hasFocus() ? child(shown->leadRow()) : nullptr;
}

QAccessible::State TableViewAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    const auto shown = table().table();
    state.multiSelectable = shown && shown->allowsMultipleSelection();
    return state;
}

QString TableViewAccessible::text(QAccessible::Text kind) const
{
    const auto shown = table().table();
    if (kind == QAccessible::Description && shown && !shown->announcement().empty())
        return QString::fromStdString(shown->announcement());
    return QAccessibleWidget::text(kind);
}

QAccessibleInterface* makeRowAccessible(QWidget& row)
{
    return new RowInSight(row);
}

void tellRowFocus(TableViewWidget& widget, int row)
{
    QAccessibleInterface* table = QAccessible::isActive() ? QAccessible::queryAccessibleInterface(&widget) : nullptr;
    QAccessibleInterface* focused = table ? table->child(row) : nullptr;
    if (!focused)
        return;
    QAccessibleEvent event(focused, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

void tellAnnouncement(TableViewWidget& widget, const std::string& text)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent event(&widget, QString::fromStdString(text));
#else
    // Screen readers read the new description of the widget with the keyboard focus.
    static_cast<void>(text);
    QAccessibleEvent event(&widget, QAccessible::DescriptionChanged);
#endif
    QAccessible::updateAccessibility(&event);
}

} // namespace quillbox
