#pragma once

#include <QAccessible>
#include <QAccessibleWidget>

#include <deque>
#include <optional>

namespace quillbox {

class MenuPopup;

// The rows of a popup for assistive technologies. They are made one by one when asked for, and at most kMost exist at a
// time (those asked for last, and the highlighted one), so the cost does not depend on the length of the list. The
// popup owns this object. A caller may use a row only until it has asked for kMost others.
class MenuAccessibleRows {
public:
    explicit MenuAccessibleRows(MenuPopup& popup) : popup_(popup) { }
    ~MenuAccessibleRows() { clear(); }
    MenuAccessibleRows(const MenuAccessibleRows&) = delete;
    MenuAccessibleRows& operator=(const MenuAccessibleRows&) = delete;

    static constexpr std::size_t kMost = 128;

    QAccessibleInterface* at(std::size_t row);
    // Rows that were returned before must not be used after this.
    void clear();

private:
    struct Entry {
        std::size_t row;
        QAccessible::Id id;
    };

    MenuPopup& popup_;
    // The row that was asked for last is at the end.
    std::deque<Entry> entries_;
};

// One level of an open menu for assistive technologies. The toolkit makes and owns it.
class MenuAccessible final : public QAccessibleWidget {
public:
    explicit MenuAccessible(MenuPopup& popup);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    QString text(QAccessible::Text kind) const override;

private:
    int firstRow() const;

    MenuPopup& popup_;
};

// The functions through which events reach assistive technologies: those of the toolkit, unless a test replaces them.
struct AssistiveTechnology {
    bool (*isListening)() = QAccessible::isActive;
    void (*tell)(QAccessibleEvent* event) = QAccessible::updateAccessibility;
};

// Tells assistive technologies what happens to an open menu, in the order that a screen reader needs: a level opens, a
// row gets the focus, a level closes. MenuLevels owns it. While no assistive technology listens, it makes and tells
// nothing.
class MenuAccessibility {
public:
    explicit MenuAccessibility(AssistiveTechnology listener);

    void opened(MenuPopup& popup) const;
    void closing(MenuPopup& popup) const;
    // The submenu of that row was opened or closed.
    void submenuChanged(MenuPopup& popup, std::size_t row) const;
    // Without a row, the focus is on the popup itself.
    void focusMoved(MenuPopup& popup, std::optional<std::size_t> row) const;

private:
    void tell(MenuPopup& popup, QAccessible::Event type) const;

    AssistiveTechnology listener_;
};

} // namespace quillbox
