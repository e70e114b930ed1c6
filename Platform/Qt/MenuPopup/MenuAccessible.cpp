#include "MenuAccessible.h"

#include "MenuPopup.h"
#include "MenuText.h"
#include "NarrowingLine.h"

#include <QGuiApplication>

#include <algorithm>

namespace quillbox {

namespace {

    // The action that opens the menu of what can be done with a row. The toolkit's own name for showing a menu is that
    // of opening the row's submenu.
    QString itemMenuAction()
    {
        return QStringLiteral("ShowContextMenu");
    }

    class RowAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
    public:
        RowAccessible(MenuPopup& popup, std::size_t row) : popup_(popup), row_(row) { }

        std::size_t row() const { return row_; }

        bool isValid() const override { return row_ < popup_.rowCount(); }
        // Rows are no QObjects.
        QObject* object() const override { return nullptr; }
        QWindow* window() const override { return popup_.windowHandle(); }
        QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&popup_); }
        QAccessibleInterface* child(int) const override { return nullptr; }
        QAccessibleInterface* childAt(int, int) const override { return nullptr; }
        int childCount() const override { return 0; }
        int indexOfChild(const QAccessibleInterface*) const override { return -1; }
        void setText(QAccessible::Text, const QString&) override { }
        QRect rect() const override { return popup_.rowRect(row_); }

        QAccessible::Role role() const override
        {
            return isValid() && item().isSeparatorItem() ? QAccessible::Separator : QAccessible::MenuItem;
        }

        QString text(QAccessible::Text kind) const override
        {
            if (!isValid() || item().isSeparatorItem())
                return {};
            if (kind == QAccessible::Name)
                return shownLines(item()).join(QChar(' '));
            return kind == QAccessible::Description ? QString::fromStdString(item().toolTip()) : QString();
        }

        QAccessible::State state() const override
        {
            QAccessible::State state;
            if (!isValid()) {
                state.invalid = true;
                return state;
            }
            const bool isSelectable = popup_.isSelectable(row_);
            const bool isSelected = popup_.selection() == row_;
            state.disabled = !isSelectable;
            state.focusable = state.selectable = isSelectable;
            state.selected = state.hotTracked = isSelected;
            state.focused = isSelected && popup_.takesKeys();
            state.offscreen = rect().isEmpty();
            state.invisible = !popup_.isVisible();
            state.checkable = item().state().has_value();
            state.checked = item().state() == NSControlStateValue::on;
            if (item().hasSubmenu()) {
                state.hasPopup = state.expandable = true;
                state.expanded = popup_.openRow() == row_;
                state.collapsed = !state.expanded;
            }
            return state;
        }

        void* interface_cast(QAccessible::InterfaceType type) override
        {
            return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
        }

        QStringList actionNames() const override
        {
            if (!popup_.isSelectable(row_))
                return {};
            QStringList names { pressAction(), setFocusAction() };
            if (item().hasSubmenu())
                names.insert(1, showMenuAction());
            if (popup_.hasItemMenu(row_))
                names.append(itemMenuAction());
            return names;
        }

        void doAction(const QString& name) override
        {
            if (!actionNames().contains(name))
                return;
            const RowRequest request = name == pressAction() ? RowRequest::choose
                : name == showMenuAction()                   ? RowRequest::openSubmenu
                : name == itemMenuAction()                   ? RowRequest::openItemMenu
                                                             : RowRequest::select;
            popup_.request(row_, request);
        }

        QString localizedActionName(const QString& name) const override
        {
            return name == itemMenuAction() ? QStringLiteral("Show Context Menu")
                                            : QAccessibleActionInterface::localizedActionName(name);
        }

        QStringList keyBindingsForAction(const QString&) const override { return {}; }

    private:
        const NSMenuItem& item() const { return *popup_.item(row_); }

        MenuPopup& popup_;
        std::size_t row_;
    };

    QAccessibleInterface* makeInterface(const QString&, QObject* object)
    {
        auto* popup = dynamic_cast<MenuPopup*>(object);
        return popup ? new MenuAccessible(*popup) : nullptr;
    }

} // namespace

QAccessibleInterface* MenuAccessibleRows::at(std::size_t row)
{
    const auto found =
        std::find_if(entries_.begin(), entries_.end(), [row](const Entry& entry) { return entry.row == row; });
    if (found != entries_.end()) {
        std::rotate(found, found + 1, entries_.end());
        return QAccessible::accessibleInterface(entries_.back().id);
    }
    if (entries_.size() == kMost) {
        // The highlighted row is kept, so that a screen reader which goes through the list still finds the focus.
        if (entries_.front().row == popup_.selection())
            std::rotate(entries_.begin(), entries_.begin() + 1, entries_.end());
        QAccessible::deleteAccessibleInterface(entries_.front().id);
        entries_.pop_front();
    }
    auto* accessible = new RowAccessible(popup_, row);
    entries_.push_back({ row, QAccessible::registerAccessibleInterface(accessible) });
    return accessible;
}

void MenuAccessibleRows::clear()
{
    for (const Entry& entry : entries_)
        QAccessible::deleteAccessibleInterface(entry.id);
    entries_.clear();
}

MenuAccessible::MenuAccessible(MenuPopup& popup) : QAccessibleWidget(&popup, QAccessible::PopupMenu), popup_(popup) { }

// The line in which text is typed comes before the rows.
int MenuAccessible::firstRow() const
{
    return popup_.line() ? 1 : 0;
}

int MenuAccessible::childCount() const
{
    return firstRow() + static_cast<int>(popup_.rowCount());
}

QAccessibleInterface* MenuAccessible::child(int index) const
{
    if (index >= 0 && index < firstRow())
        return QAccessible::queryAccessibleInterface(popup_.line());
    const auto row = static_cast<std::size_t>(index - firstRow());
    return index >= firstRow() && row < popup_.rowCount() ? popup_.accessibleRows().at(row) : nullptr;
}

int MenuAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    if (child && firstRow() > 0 && child->object() == popup_.line())
        return 0;
    const auto* row = dynamic_cast<const RowAccessible*>(child);
    return row && row->window() == window() ? firstRow() + static_cast<int>(row->row()) : -1;
}

QAccessibleInterface* MenuAccessible::childAt(int x, int y) const
{
    const QWidget* line = popup_.line();
    if (line && line->rect().contains(line->mapFromGlobal(QPoint(x, y))))
        return child(0);
    const std::optional<std::size_t> row = popup_.rowAt({ x, y });
    return row ? popup_.accessibleRows().at(*row) : nullptr;
}

QAccessibleInterface* MenuAccessible::focusChild() const
{
    if (!popup_.takesKeys())
        return nullptr;
    if (popup_.selection())
        return popup_.accessibleRows().at(*popup_.selection());
    return firstRow() > 0 ? child(0) : nullptr;
}

QString MenuAccessible::text(QAccessible::Text kind) const
{
    if (kind != QAccessible::Name)
        return QAccessibleWidget::text(kind);
    return popup_.name().isEmpty() ? QGuiApplication::applicationDisplayName() : popup_.name();
}

MenuAccessibility::MenuAccessibility(AssistiveTechnology listener) : listener_(listener)
{
    QAccessible::installFactory(makeInterface);
}

void MenuAccessibility::opened(MenuPopup& popup) const
{
    tell(popup, QAccessible::PopupMenuStart);
}

void MenuAccessibility::closing(MenuPopup& popup) const
{
    tell(popup, QAccessible::PopupMenuEnd);
}

void MenuAccessibility::submenuChanged(MenuPopup& popup, std::size_t row) const
{
    if (!listener_.isListening())
        return;
    QAccessible::State changed;
    changed.expanded = changed.collapsed = true;
    QAccessibleStateChangeEvent event(popup.accessibleRows().at(row), changed);
    listener_.tell(&event);
}

void MenuAccessibility::focusMoved(MenuPopup& popup, std::optional<std::size_t> row) const
{
    if (!row) {
        tell(popup, QAccessible::Focus);
        return;
    }
    if (!listener_.isListening())
        return;
    QAccessibleEvent event(popup.accessibleRows().at(*row), QAccessible::Focus);
    listener_.tell(&event);
}

void MenuAccessibility::tell(MenuPopup& popup, QAccessible::Event type) const
{
    if (!listener_.isListening())
        return;
    QAccessibleEvent event(&popup, type);
    listener_.tell(&event);
}

} // namespace quillbox
