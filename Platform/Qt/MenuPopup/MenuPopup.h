#pragma once

#include "MenuAccessible.h"
#include "MenuLayout.h"
#include "MenuRowPainter.h"
#include "NSMenu.h"

#include <QWidget>

#include <memory>
#include <optional>

namespace quillbox {

class MenuPopup;

// What an assistive technology may ask of a row.
enum class RowRequest { select, choose, openSubmenu };

// What happens to the open popups, whichever of them the display gave the event to: the display gives
// all to the one opened last. Positions are global logical pixels.
class MenuPopupEvents {
public:
    virtual ~MenuPopupEvents() = default;
    virtual void pointerMoved(QPoint position, Qt::MouseButtons buttons) = 0;
    virtual void pointerPressed(QPoint position) = 0;
    virtual void pointerReleased(QPoint position) = 0;
    // The pixels to scroll by, downward where positive.
    virtual void wheelTurned(QPoint position, double pixels) = 0;
    virtual void keyPressed(QKeyEvent& event) = 0;
    virtual void rowRequested(MenuPopup& popup, std::size_t row, RowRequest request) = 0;
    // The display took the popup off the screen by itself.
    virtual void wasHidden(MenuPopup& popup) = 0;
};

// One level of an open menu on the screen. Draws the rows in sight of an NSMenu and never touches another;
// passes what the person does to its MenuPopupEvents and decides nothing. Keeps the menu alive until it is
// retired. Row positions are indexes into the menu's items.
class MenuPopup final : public QWidget {
public:
    // Where the pointer is in the popup.
    enum class Zone { outside, frame, rows, upperScroller, lowerScroller };

    // `events` must outlive the popup or its retirement. `available`: the part of the screen that the popup
    // may cover.
    MenuPopup(MenuPopupEvents& events, QRect available);
    ~MenuPopup() override;
    // Makes the window and the pixels of a long list before there is a menu to show, which takes as long as painting
    // one.
    void makeWindow();
    // Once, before anything else is asked of it.
    void setMenu(std::shared_ptr<NSMenu> menu);

    // The size that shows everything, as far as the screen has room, for whoever places it; this looks at as many
    // rows as fit on the screen. Then setGeometry and show.
    QSize wantedSize() const;
    // The distance from the upper edge of the popup to that of the first row.
    int firstRowTop() const;
    // The edge that stays where it is when wider rows come in sight: the one beside the anchor or the parent.
    Qt::Edge fixedEdge() const { return fixedEdge_; }
    void setFixedEdge(Qt::Edge edge) { fixedEdge_ = edge; }
    // Takes it off the screen for good and lets go of the menu and of the events; the widget itself
    // goes when the present event has ended.
    static void retire(std::unique_ptr<MenuPopup> popup);
    // What a person who can't see it hears of it: the menu's title, else that of the row which opened it.
    const QString& name() const { return name_; }
    void setName(QString name) { name_ = std::move(name); }

    const std::shared_ptr<NSMenu>& menu() const { return menu_; }
    const std::shared_ptr<NSMenuItem>& item(std::size_t row) const { return menu_->itemArray()[row]; }
    std::size_t rowCount() const { return layout_.rowCount(); }
    bool isSelectable(std::size_t row) const;
    const MenuLayout& rows() const { return layout_; }

    Zone zoneAt(QPoint global) const;
    std::optional<std::size_t> rowAt(QPoint global) const;
    // The part of the row that is in sight, in global coordinates; empty for a row out of sight.
    QRect rowRect(std::size_t row) const;

    // The highlighted row.
    std::optional<std::size_t> selection() const { return selection_; }
    void select(std::optional<std::size_t> row);
    // The row whose submenu is open.
    std::optional<std::size_t> openRow() const { return openRow_; }
    void setOpenRow(std::optional<std::size_t> row) { openRow_ = row; }
    // Whether the keys act on this level.
    bool takesKeys() const { return takesKeys_; }
    void setTakesKeys(bool takesKeys) { takesKeys_ = takesKeys; }
    // Scrolls as far as needed; false where nothing moved.
    bool bringIntoSight(std::size_t row);
    bool scrollBy(int pixels);
    int ordinaryRowHeight() const { return painter_.ordinaryHeight(); }

    // What the tool tip of a row says: its own tip, and its title where that is cut. Empty for none.
    QString tipOf(std::size_t row) const;

    // For assistive technologies.
    MenuAccessibleRows& accessibleRows() { return accessibleRows_; }
    // Passes it on once the present event has ended: whoever asks over the bus has its answer before a choice
    // closes the menu or shows an alert.
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
    };
    void takeMenuColours();
    Margins margins() const;
    // The room for rows in local coordinates: the width and the height between margins and scrollers.
    QRect rowsRect() const;
    QRect localRect(const MenuLayout::VisibleRow& row) const;
    int widestWidth() const;
    int widthFor(int widestRow) const;
    void growToVisibleRows();
    void paintScrollers(QPainter& painter) const;
    void paintPositionMark(QPainter& painter) const;

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
};

} // namespace quillbox
