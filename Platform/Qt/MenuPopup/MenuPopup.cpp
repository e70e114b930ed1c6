#include "MenuPopup.h"

#include "MenuText.h"
#include "NarrowingLine.h"
#include "ScrollMarks.h"

#include <QApplication>
#include <QBackingStore>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QWheelEvent>

#include <algorithm>

namespace quillbox {

namespace {

    // The part of the screen's width that a menu may take. Longer titles are cut in the middle.
    constexpr double kWidestPart = 0.4;
    constexpr int kNarrowestInCharacters = 12;
    // The share of the widest popup's width for which pixels are made in advance. The toolkit uses them for popups of
    // at least half that width.
    constexpr double kExpectedPart = 0.75;
    // How far one notch of a wheel scrolls.
    constexpr int kRowsPerNotch = 3;
    constexpr double kAngleOfNotch = 120;

} // namespace

MenuPopup::MenuPopup(MenuPopupEvents& events, QRect available)
    : QWidget(nullptr, Qt::Popup),
      events_(&events),
      available_(available),
      painter_(*this),
      layout_(0, {})
{
    setAttribute(Qt::WA_X11NetWmWindowTypePopupMenu);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    takeMenuColours();
    setFont(QApplication::font("QMenu"));
    painter_ = MenuRowPainter(*this);
}

MenuPopup::~MenuPopup() = default;

// The desktop may change its colours while the menu is open.
void MenuPopup::takeMenuColours()
{
    const QPalette colours = QApplication::palette("QMenu");
    if (palette() != colours)
        setPalette(colours);
}

void MenuPopup::makeWindow()
{
    setGeometry(
        QRect(available_.topLeft(), QSize(static_cast<int>(widestWidth() * kExpectedPart), available_.height())));
    winId();
    QBackingStore& pixels = *backingStore();
    pixels.resize(size());
    pixels.beginPaint(rect());
    // The memory becomes available only when it is written to.
    QPainter(pixels.paintDevice()).fillRect(rect(), palette().window());
    pixels.endPaint();
}

void MenuPopup::setMenu(std::shared_ptr<NSMenu> menu)
{
    menu_ = std::move(menu);
    showRows(std::nullopt);
}

void MenuPopup::showRows(std::optional<TitleSearch::Rows> rows)
{
    shown_ = std::move(rows);
    layout_ = MenuLayout(shown_ ? shown_->size() : menu_->numberOfItems(),
                         [this](std::size_t row) { return painter_.heightOf(*item(row)); });
}

QSize MenuPopup::wantedSize() const
{
    const Margins around = margins();
    const int room = available_.height() - 2 * around.vertical;
    int height = 0;
    int widest = 0;
    for (std::size_t row = 0; row < rowCount() && height < room; ++row) {
        height += painter_.heightOf(*item(row));
        widest = std::max(widest, painter_.widthOf(*item(row)));
    }
    return { widthFor(widest), std::min(height, room) + 2 * around.vertical };
}

int MenuPopup::firstRowTop() const
{
    return margins().vertical;
}

void MenuPopup::retire(std::unique_ptr<MenuPopup> popup)
{
    popup->events_ = nullptr;
    popup->hide();
    popup->accessibleRows_.clear();
    popup->layout_ = MenuLayout(0, {});
    popup->selection_.reset();
    popup->openRow_.reset();
    popup->menu_.reset();
    // The event that led here may have been sent to this popup.
    popup.release()->deleteLater();
}

bool MenuPopup::isSelectable(std::size_t row) const
{
    return row < rowCount() && !item(row)->isSeparatorItem() && item(row)->isEnabled();
}

MenuPopup::Zone MenuPopup::zoneAt(QPoint global) const
{
    const QPoint local = global - pos();
    if (!rect().contains(local))
        return Zone::outside;
    if (rowsRect().contains(local))
        return Zone::rows;
    if (!isScrolling_ || (line_ && line_->geometry().contains(local)))
        return Zone::frame;
    return local.y() < rowsRect().top() ? Zone::upperScroller : Zone::lowerScroller;
}

std::optional<std::size_t> MenuPopup::rowAt(QPoint global) const
{
    if (zoneAt(global) != Zone::rows)
        return std::nullopt;
    return layout_.rowAt(global.y() - pos().y() - rowsRect().top());
}

QRect MenuPopup::rowRect(std::size_t row) const
{
    const auto visible = layout_.visibleRow(row);
    return visible ? localRect(*visible).intersected(rowsRect()).translated(pos()) : QRect();
}

void MenuPopup::select(std::optional<std::size_t> row)
{
    if (row == selection_)
        return;
    for (const auto& changed : { selection_, row })
        if (changed)
            if (const auto visible = layout_.visibleRow(*changed))
                update(localRect(*visible));
    selection_ = row;
}

bool MenuPopup::bringIntoSight(std::size_t row)
{
    if (!layout_.scrollToRow(row))
        return false;
    growToVisibleRows();
    update();
    return true;
}

bool MenuPopup::scrollBy(int pixels)
{
    if (!isScrolling_ || !layout_.scrollBy(pixels))
        return false;
    growToVisibleRows();
    update();
    return true;
}

void MenuPopup::beginNarrowing()
{
    if (line_) {
        line_->selectAll();
        return;
    }
    line_ = std::make_unique<NarrowingLine>(*this, *menu_, [this](QKeyEvent& event) { keyPressEvent(&event); });
    connect(line_.get(), &QLineEdit::textChanged, this, [this] {
        if (events_)
            events_->narrowingTextChanged(*this);
    });
    placeOfAll_ = geometry();
    const int wanted = std::min(height() + margins().line, available_.height());
    setGeometry(x(), std::min(y(), available_.y() + available_.height() - wanted), width(), wanted);
    layOutRows();
    line_->show();
    line_->setFocus();
    update();
}

void MenuPopup::narrow()
{
    selection_.reset();
    accessibleRows_.clear();
    showRows(line_ ? line_->rows() : std::nullopt);
    layOutRows();
    growToVisibleRows();
    update();
}

std::optional<std::size_t> MenuPopup::endNarrowing()
{
    std::optional<std::size_t> chosen = selection_;
    if (chosen && shown_)
        chosen = (*shown_)[*chosen];
    setFocus();
    line_->hide();
    // The key that leads here may have come through the line.
    line_.release()->deleteLater();
    setGeometry(x(), placeOfAll_.y(), width(), placeOfAll_.height());
    narrow();
    if (chosen)
        bringIntoSight(*chosen);
    return chosen;
}

QString MenuPopup::tipOf(std::size_t row) const
{
    const NSMenuItem& shown = *item(row);
    QStringList parts;
    if (painter_.isElided(shown, rowsRect().width()))
        parts = shownLines(shown);
    if (!shown.toolTip().empty())
        parts.append(QString::fromStdString(shown.toolTip()));
    return parts.join(QChar('\n'));
}

void MenuPopup::request(std::size_t row, RowRequest request)
{
    QMetaObject::invokeMethod(
        this,
        [this, row, request] {
            if (events_)
                events_->rowRequested(*this, row, request);
        },
        Qt::QueuedConnection);
}

bool MenuPopup::event(QEvent* event)
{
    // No shortcut of our windows may take a key from an open menu.
    if (event->type() == QEvent::ShortcutOverride)
        event->accept();
    return QWidget::event(event);
}

void MenuPopup::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    QStyleOption panel;
    panel.initFrom(this);
    style()->drawPrimitive(QStyle::PE_PanelMenu, &panel, &painter, this);

    // A popup that may still grow is wide enough for its visible rows.
    const bool mayBeCut = width() >= widestWidth();
    painter.setClipRect(rowsRect());
    for (const MenuLayout::VisibleRow& visible : layout_.visibleRows()) {
        const QRect rect = localRect(visible);
        if (rect.intersects(event->rect()))
            painter_.paint(painter, rect, *item(visible.row), visible.row == selection_, mayBeCut);
    }
    if (rowCount() == 0) {
        painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
        painter.drawText(rowsRect(), Qt::AlignHCenter | Qt::AlignTop, QStringLiteral("No Match"));
    }
    painter.setClipping(false);
    if (isScrolling_)
        paintScrollMarks(painter, *this, rowsRect(), margins().scroller, layout_);
    QStyleOptionFrame frame;
    frame.initFrom(this);
    frame.lineWidth = style()->pixelMetric(QStyle::PM_MenuPanelWidth, nullptr, this);
    style()->drawPrimitive(QStyle::PE_FrameMenu, &frame, &painter, this);
}

void MenuPopup::resizeEvent(QResizeEvent*)
{
    layOutRows();
}

void MenuPopup::layOutRows()
{
    const Margins around = margins();
    const int room = height() - 2 * around.vertical - around.line;
    isScrolling_ = layout_.heightOfRows(room + 1) > room;
    layout_.setViewportHeight(rowsRect().height());
    if (line_)
        line_->setGeometry(around.horizontal, around.vertical, width() - 2 * around.horizontal, around.line);
}

void MenuPopup::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        takeMenuColours();
    if (event->type() != QEvent::StyleChange && event->type() != QEvent::FontChange)
        return;
    painter_ = MenuRowPainter(*this);
    layout_.setViewportHeight(rowsRect().height());
    if (isVisible())
        growToVisibleRows();
    update();
}

void MenuPopup::hideEvent(QHideEvent*)
{
    if (!events_)
        return;
    events_->wasHidden(*this);
}

void MenuPopup::mouseMoveEvent(QMouseEvent* event)
{
    if (!events_)
        return;
    events_->pointerMoved(event->globalPosition().toPoint(), event->buttons());
}

void MenuPopup::mousePressEvent(QMouseEvent* event)
{
    if (!events_)
        return;
    events_->pointerPressed(event->globalPosition().toPoint(), event->button());
}

void MenuPopup::mouseReleaseEvent(QMouseEvent* event)
{
    if (!events_)
        return;
    events_->pointerReleased(event->globalPosition().toPoint(), event->modifiers());
}

void MenuPopup::wheelEvent(QWheelEvent* event)
{
    if (!events_)
        return;
    const double pixels = event->pixelDelta().y() != 0
        ? event->pixelDelta().y()
        : event->angleDelta().y() / kAngleOfNotch * kRowsPerNotch * ordinaryRowHeight();
    events_->wheelTurned(event->globalPosition().toPoint(), -pixels);
    event->accept();
}

void MenuPopup::keyPressEvent(QKeyEvent* event)
{
    if (!events_)
        return;
    events_->keyPressed(*event);
    event->accept();
}

MenuPopup::Margins MenuPopup::margins() const
{
    const int frame = style()->pixelMetric(QStyle::PM_MenuPanelWidth, nullptr, this);
    return { frame + style()->pixelMetric(QStyle::PM_MenuHMargin, nullptr, this),
             frame + style()->pixelMetric(QStyle::PM_MenuVMargin, nullptr, this),
             style()->pixelMetric(QStyle::PM_MenuScrollerHeight, nullptr, this),
             line_ ? line_->sizeHint().height() : 0 };
}

QRect MenuPopup::rowsRect() const
{
    const Margins around = margins();
    const int edge = around.vertical + (isScrolling_ ? around.scroller : 0);
    return rect().adjusted(around.horizontal, edge + around.line, -around.horizontal, -edge);
}

QRect MenuPopup::localRect(const MenuLayout::VisibleRow& row) const
{
    const QRect rows = rowsRect();
    return { rows.left(), rows.top() + row.top, rows.width(), row.height };
}

int MenuPopup::widestWidth() const
{
    return static_cast<int>(available_.width() * kWidestPart);
}

int MenuPopup::widthFor(int widestRow) const
{
    const int widest = widestWidth();
    const int narrowest = std::min(widest, kNarrowestInCharacters * fontMetrics().averageCharWidth());
    return std::clamp(widestRow + 2 * margins().horizontal, narrowest, widest);
}

void MenuPopup::growToVisibleRows()
{
    int widestRow = 0;
    for (const MenuLayout::VisibleRow& visible : layout_.visibleRows())
        widestRow = std::max(widestRow, painter_.widthOf(*item(visible.row)));
    const int wanted = widthFor(widestRow);
    if (wanted <= width())
        return;
    const int x = fixedEdge_ == Qt::LeftEdge ? pos().x() : pos().x() + width() - wanted;
    const int last = available_.x() + available_.width() - wanted;
    setGeometry(std::clamp(x, available_.x(), last), pos().y(), wanted, height());
}

} // namespace quillbox
