#include "MenuRowPainter.h"

#include "ImageRenderer.h"
#include "MenuText.h"

#include <QIcon>
#include <QPainter>
#include <QStyle>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace quillbox {

namespace {

    // The number of characters in the text for which a style is measured.
    constexpr qsizetype kSampleLength = 100;

    // Returns the number of whole pixels that hold every line. With unhinted fonts and fractional scales lines end
    // between pixels, and a line that gets too little room loses letters.
    int widestLine(const QFontMetricsF& metrics, const QStringList& lines)
    {
        int widest = 0;
        for (const QString& line : lines)
            widest = std::max(widest, static_cast<int>(std::ceil(metrics.horizontalAdvance(line))));
        return widest;
    }

    // Returns `text` as a style needs it: cut in the middle to `room` if it is too long, and with "&" doubled, because
    // a single one would mark a mnemonic. A name in the other writing direction than the menu keeps its full stops at
    // its own end.
    QString forStyle(const QString& text, const QStyleOptionMenuItem& option, std::optional<int> room)
    {
        QString shown = room ? option.fontMetrics.elidedText(text, Qt::ElideMiddle, *room) : text;
        shown.replace(QChar('&'), QStringLiteral("&&"));
        if (shown.isRightToLeft() == (option.direction == Qt::RightToLeft))
            return shown;
        constexpr QChar kFirstStrongIsolate(0x2068);
        constexpr QChar kPopDirectionalIsolate(0x2069);
        return kFirstStrongIsolate + shown + kPopDirectionalIsolate;
    }

} // namespace

MenuRowPainter::MenuRowPainter(const QWidget& popup) : popup_(&popup)
{
    const QStyle& style = *popup.style();
    lineHeight_ = popup.fontMetrics().height();

    QStyleOptionMenuItem row = option({});
    row.menuItemType = QStyleOptionMenuItem::SubMenu;
    row.icon = QIcon(QPixmap(kIconSide, kIconSide));
    // Some styles use the size of the contents, others measure the text themselves, so both must agree. The text is
    // wider than the least width of any style.
    row.text = QString(kSampleLength, QChar('x'));
    const int textWidth = widestLine(QFontMetricsF(row.font), { row.text });
    const QSize size = style.sizeFromContents(QStyle::CT_MenuItem, &row, { textWidth, lineHeight_ }, &popup);
    ordinaryHeight_ = std::max({ size.height(), lineHeight_, kIconSide + 2 });
    widthBesideText_ = std::max(size.width() - textWidth, kIconSide);

    QStyleOptionMenuItem separator = option({});
    separator.menuItemType = QStyleOptionMenuItem::Separator;
    // QMenu gives these values to a style.
    separatorHeight_ = std::max(1, style.sizeFromContents(QStyle::CT_MenuItem, &separator, { 2, 2 }, &popup).height());
}

int MenuRowPainter::heightOf(const NSMenuItem& item) const
{
    if (item.isSeparatorItem())
        return separatorHeight_;
    if (!item.attributedTitle())
        return ordinaryHeight_;
    return ordinaryHeight_ + (static_cast<int>(shownLines(item).size()) - 1) * lineHeight_;
}

int MenuRowPainter::widthOf(const NSMenuItem& item) const
{
    return item.isSeparatorItem() ? 0 : widestLine(QFontMetricsF(popup_->font()), shownLines(item)) + widthBesideText_;
}

bool MenuRowPainter::isElided(const NSMenuItem& item, int rowWidth) const
{
    return widthOf(item) > rowWidth;
}

void MenuRowPainter::paint(QPainter& painter, const QRect& row, const NSMenuItem& item, bool isSelected,
                           bool mayBeCut) const
{
    const QStyle& style = *popup_->style();
    QStyleOptionMenuItem rowOption = option(row);
    if (item.isSeparatorItem()) {
        rowOption.menuItemType = QStyleOptionMenuItem::Separator;
        style.drawControl(QStyle::CE_MenuItem, &rowOption, &painter, popup_);
        return;
    }
    rowOption.menuItemType = item.hasSubmenu() ? QStyleOptionMenuItem::SubMenu : QStyleOptionMenuItem::Normal;
    if (!item.isEnabled()) {
        rowOption.state &= ~QStyle::State_Enabled;
        rowOption.palette.setCurrentColorGroup(QPalette::Disabled);
    } else if (isSelected) {
        rowOption.state |= QStyle::State_Selected;
    }
    if (!item.image().isEmpty()) {
        NSImage image = item.image();
        image.setSize({ kIconSide, kIconSide });
        const QColor colour =
            rowOption.palette.color(isSelected && item.isEnabled() ? QPalette::HighlightedText : QPalette::Text);
        rowOption.icon = QIcon(ImageRenderer::pixmap(image, popup_->devicePixelRatioF(), colour));
    }
    if (item.state()) {
        rowOption.checkType = QStyleOptionMenuItem::NonExclusive;
        rowOption.checked = item.state() == NSControlStateValue::on;
    }
    const QStringList lines = shownLines(item);
    const auto room = mayBeCut ? std::optional(row.width() - widthBesideText_) : std::nullopt;
    if (lines.size() > 1) {
        paintSeveralLines(painter, lines, room, rowOption);
        return;
    }
    rowOption.text = forStyle(lines.first(), rowOption, room);
    style.drawControl(QStyle::CE_MenuItem, &rowOption, &painter, popup_);
}

QStyleOptionMenuItem MenuRowPainter::option(const QRect& row) const
{
    QStyleOptionMenuItem option;
    option.initFrom(popup_);
    option.rect = row;
    option.menuRect = popup_->rect();
    option.state = QStyle::State_Enabled | (popup_->isActiveWindow() ? QStyle::State_Active : QStyle::State_None);
    option.palette.setCurrentColorGroup(QPalette::Active);
    option.font = popup_->font();
    option.fontMetrics = popup_->fontMetrics();
    option.maxIconWidth = kIconSide + 4;
    option.menuHasCheckableItems = false;
    option.checkType = QStyleOptionMenuItem::NotCheckable;
    return option;
}

void MenuRowPainter::paintSeveralLines(QPainter& painter, const QStringList& lines, std::optional<int> room,
                                       const QStyleOptionMenuItem& option) const
{
    const QRect row = option.rect;
    const QStyle& style = *popup_->style();
    style.drawControl(QStyle::CE_MenuItem, &option, &painter, popup_);
    // The style draws each line as a separate row, so that it begins where the titles of other rows begin.
    QStyleOptionMenuItem line = option;
    line.icon = {};
    line.menuItemType = QStyleOptionMenuItem::Normal;
    int top = row.top() + (ordinaryHeight_ - lineHeight_) / 2;
    for (const QString& text : lines) {
        line.rect = QRect(row.left(), top, row.width(), lineHeight_);
        line.text = forStyle(text, line, room);
        style.drawControl(QStyle::CE_MenuItem, &line, &painter, popup_);
        top += lineHeight_;
    }
}

} // namespace quillbox
