#pragma once

#include <QAccessible>
#include <QAccessibleWidget>

#include <deque>
#include <optional>

namespace quillbox {

class MenuPopup;

// The rows of a popup that an assistive technology has asked about. Made one by one when asked for; at most
// kMost live at a time, those asked for last and the highlighted one, so that a list of any length costs what
// is looked at. Owned by its popup; whoever asks keeps a row no longer than it takes to ask for kMost others.
class MenuAccessibleRows {
public:
    explicit MenuAccessibleRows(MenuPopup& popup) : popup_(popup) { }
    ~MenuAccessibleRows() { clear(); }
    MenuAccessibleRows(const MenuAccessibleRows&) = delete;
    MenuAccessibleRows& operator=(const MenuAccessibleRows&) = delete;

    static constexpr std::size_t kMost = 128;

    QAccessibleInterface* at(std::size_t row);
    // What was given out before is not to be used any more.
    void clear();

private:
    struct Entry {
        std::size_t row;
        QAccessible::Id id;
    };

    MenuPopup& popup_;
    // The one asked for last at the end.
    std::deque<Entry> entries_;
};

// One level of an open menu as an assistive technology sees it. The toolkit makes it and owns it.
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
    MenuPopup& popup_;
};

// Takes what happens to a menu. It is the toolkit's bridge to whoever listens, unless a test gives another.
struct AssistiveTechnology {
    bool (*isListening)() = QAccessible::isActive;
    void (*tell)(QAccessibleEvent* event) = QAccessible::updateAccessibility;
};

// Tells assistive technologies, in the order a screen reader needs, what happens to an open menu: a level
// opens, a row gets the focus, a level closes. Owned and called by MenuLevels. Makes nothing and tells nothing
// while no assistive technology listens.
class MenuAccessibility {
public:
    explicit MenuAccessibility(AssistiveTechnology listener);

    void opened(MenuPopup& popup) const;
    void closing(MenuPopup& popup) const;
    // The submenu of that row was opened or closed.
    void submenuChanged(MenuPopup& popup, std::size_t row) const;
    // The focus is the popup's own where no row of it is highlighted.
    void focusMoved(MenuPopup& popup, std::optional<std::size_t> row) const;

private:
    void tell(MenuPopup& popup, QAccessible::Event type) const;

    AssistiveTechnology listener_;
};

} // namespace quillbox
