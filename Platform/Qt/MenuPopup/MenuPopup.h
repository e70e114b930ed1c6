#pragma once

#include "MenuAccessible.h"
#include "MenuLayout.h"
#include "MenuRowPainter.h"
#include "NSMenu.h"
#include "TitleSearch.h"

#include <QWidget>

#include <memory>
#include <optional>

namespace quillbox {

class MenuPopup;
class NarrowingLine;

// What an assistive technology may ask for.
enum class RowRequest { select, choose, openSubmenu, openItemMenu };

// Gets the events of all open popups. The display may send an event to another popup than the one it is for: it sends
// all to the popup that was opened last. Positions are in global logical pixels.
class MenuPopupEvents {
public:
    virtual ~MenuPopupEvents() = default;
    virtual void pointerMoved(QPoint position, Qt::MouseButtons buttons) = 0;
    virtual void pointerPressed(QPoint position, Qt::MouseButton button) = 0;
    virtual void pointerReleased(QPoint position, Qt::KeyboardModifiers modifiers) = 0;
    // `pixels` is the distance to scroll, downwards if positive.
    virtual void wheelTurned(QPoint position, double pixels) = 0;
    virtual void keyPressed(QKeyEvent& event) = 0;
    virtual void rowRequested(MenuPopup& popup, std::size_t row, RowRequest request) = 0;
    // The text by which the popup is to be narrowed has changed.
    virtual void narrowingTextChanged(MenuPopup& popup) = 0;
    // The display took the popup off the screen by itself.
    virtual void wasHidden(MenuPopup& popup) = 0;
};

// One level of an open menu on the screen. It draws the visible rows of an NSMenu and looks at no others. It passes
// what the user does to its MenuPopupEvents and makes no decisions. It keeps the menu alive until it is retired. Rows
// count what it shows: all of the menu's items, unless it is narrowed to some.
class MenuPopup final : public QWidget {
public:
    // The part of the popup in which the pointer is.
    enum class Zone { outside, frame, rows, upperScroller, lowerScroller };

    // `events` must outlive the popup, or its retirement. `available` is the part of the screen that the popup may
    // cover.
    MenuPopup(MenuPopupEvents& events, QRect available);
    ~MenuPopup() override;
    // Makes the window and its pixels before there is a menu to show. For a long list that takes as long as painting
    // it.
    void makeWindow();
    // Must be called once, before anything below.
    void setMenu(std::shared_ptr<NSMenu> menu);

    // Returns the size that shows everything, as far as the screen has room. It looks at as many rows as fit on the
    // screen. Whoever places the popup calls this, then setGeometry() and show().
    QSize wantedSize() const;
    // Returns the distance from the upper edge of the popup to that of the first row.
    int firstRowTop() const;
    // The edge that stays in place if wider rows come into view: the one beside the anchor or the parent.
    Qt::Edge fixedEdge() const { return fixedEdge_; }
    void setFixedEdge(Qt::Edge edge) { fixedEdge_ = edge; }
    // Takes the popup off the screen for good and releases the menu and the events. The widget itself is deleted when
    // the present event has ended.
    static void retire(std::unique_ptr<MenuPopup> popup);
    // The name for assistive technologies: the menu's title, otherwise that of the row that opened it.
    const QString& name() const { return name_; }
    void setName(QString name) { name_ = std::move(name); }

    const std::shared_ptr<NSMenu>& menu() const { return menu_; }
    const std::shared_ptr<NSMenuItem>& item(std::size_t row) const
    {
        return menu_->itemArray()[shown_ ? (*shown_)[row] : row];
    }
    std::size_t rowCount() const { return layout_.rowCount(); }
    bool isSelectable(std::size_t row) const;
    // Whether the row stands for a file, so that there is a menu of what can be done with it.
    bool hasItemMenu(std::size_t row) const { return isSelectable(row) && item(row)->representedFile(); }
    const MenuLayout& rows() const { return layout_; }

    Zone zoneAt(QPoint global) const;
    std::optional<std::size_t> rowAt(QPoint global) const;
    // Returns the visible part of the row, in global coordinates; empty if the row is not visible.
    QRect rowRect(std::size_t row) const;

    // The highlighted row.
    std::optional<std::size_t> selection() const { return selection_; }
    void select(std::optional<std::size_t> row);
    // The row whose submenu is open.
    std::optional<std::size_t> openRow() const { return openRow_; }
    void setOpenRow(std::optional<std::size_t> row) { openRow_ = row; }
    // Whether keys act on this level.
    bool takesKeys() const { return takesKeys_; }
    void setTakesKeys(bool takesKeys) { takesKeys_ = takesKeys; }
    // Scrolls as far as needed. Returns false if nothing moved.
    bool bringIntoSight(std::size_t row);
    bool scrollBy(int pixels);
    int ordinaryRowHeight() const { return painter_.ordinaryHeight(); }

    // Narrowing: a line at the top in which text is typed, and the rows that contain it, the best ones first.
    // Shows the line, or selects its text.
    void beginNarrowing();
    // The line, or null.
    NarrowingLine* line() const { return line_.get(); }
    // Shows the rows for the line's text. No row is highlighted then.
    void narrow();
    // Shows all rows again, in the place that they had. Returns the row that was highlighted, to be highlighted again.
    std::optional<std::size_t> endNarrowing();

    // Returns the text of a row's tool tip: its own, and its title if that is cut off. Empty if there is none.
    QString tipOf(std::size_t row) const;

    // For assistive technologies.
    MenuAccessibleRows& accessibleRows() { return accessibleRows_; }
    // Passes on the request after the present event has ended, so that a caller on the bus has its answer before a
    // choice closes the menu or shows an alert.
    void request(std::size_t row, RowRequest request);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Margins {
        int horizontal = 0;
        int vertical = 0;
        int scroller = 0;
        // The height of the line in which text is typed; 0 if there is none.
        int line = 0;
    };
    void takeMenuColours();
    void showRows(std::optional<TitleSearch::Rows> rows);
    void layOutRows();
    Margins margins() const;
    // Returns the area for rows between margins and scrollers, in local coordinates.
    QRect rowsRect() const;
    QRect localRect(const MenuLayout::VisibleRow& row) const;
    int widestWidth() const;
    int widthFor(int widestRow) const;
    void growToVisibleRows();

    std::shared_ptr<NSMenu> menu_;
    MenuPopupEvents* events_;
    QRect available_;
    MenuRowPainter painter_;
    MenuLayout layout_;
    QString name_;
    std::optional<std::size_t> selection_;
    std::optional<std::size_t> openRow_;
    bool takesKeys_ = false;
    MenuAccessibleRows accessibleRows_ { *this };
    Qt::Edge fixedEdge_ = Qt::LeftEdge;
    bool isScrolling_ = false;
    std::unique_ptr<NarrowingLine> line_;
    // The items that are shown, while the popup is narrowed.
    std::optional<TitleSearch::Rows> shown_;
    // Where the popup was before the line was shown.
    QRect placeOfAll_;
};

} // namespace quillbox
