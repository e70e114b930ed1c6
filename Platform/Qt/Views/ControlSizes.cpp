#include "ControlSizes.h"

#include "Appearance.h"
#include "NSButton.h"
#include "NSPopUpButton.h"
#include "NSTextField.h"
#include "ShownText.h"

#include <QApplication>
#include <QFrame>
#include <QStyle>
#include <QStyleOptionTabWidgetFrame>
#include <QTabBar>

#include <algorithm>
#include <cmath>

namespace quillbox {

namespace {

    // In logical pixels.
    constexpr int kRowPadding = 8;
    constexpr int kLowestRow = 22;
    constexpr double kSmallScrollerPart = 0.75;
    constexpr int kNarrowestScroller = 9;

    NSSize sizeOf(QSize size)
    {
        return { static_cast<double>(size.width()), static_cast<double>(size.height()) };
    }

} // namespace

ControlSizes::Samples& ControlSizes::samples()
{
    if (!samples_)
        samples_ = std::make_unique<Samples>();
    return *samples_;
}

void ControlSizes::forget()
{
    samples_.reset();
    rowHeight_.reset();
    border_.reset();
    insets_.reset();
}

NSSize ControlSizes::of(const NSTextField& field, double widthLimit)
{
    const QFont font = shownFont(field.font(), ordinaryFont());
    if (field.isEditable()) {
        QLineEdit& sample = samples().lineEdit;
        sample.setFrame(field.isBezeled());
        sample.setFont(font);
        return { kNoNaturalLength, static_cast<double>(sample.sizeHint().height()) };
    }
    const bool isOneLine = field.maximumNumberOfLines() == 1 && !field.isSelectable();
    ShownText text(field.attributedStringValue(), font, isOneLine);
    text.setReflowsParagraphs(field.reflowsParagraphs());
    return text.size(widthLimit);
}

NSSize ControlSizes::of(const NSButton& button, double widthLimit)
{
    if (button.imagePosition() == NSButton::ImagePosition::imageOnly)
        return button.image() ? button.image()->size() : NSSize {};
    const QString title = QString::fromStdString(button.title()).replace(QChar('&'), QStringLiteral("&&"));
    const QFont font = shownFont(button.font(), ordinaryFont());
    if (button.buttonType() == NSButton::ButtonType::switchButton) {
        CheckBox& sample = samples().checkBox;
        sample.setFont(font);
        sample.showTitle(title);
        return sizeOf(sample.sizeWithin(widthLimit));
    }
    QPushButton& sample = samples().pushButton;
    sample.setFont(font);
    sample.setText(title);
    // What styles leave beside a title does not grow with the font.
    const QFontMetrics metrics(font);
    const int whole = metrics.size(Qt::TextShowMnemonic, title).width() + metrics.height();
    return sizeOf(sample.sizeHint().expandedTo(QSize(whole, 0)));
}

NSSize ControlSizes::of(const NSPopUpButton& button)
{
    QComboBox& sample = samples().comboBox;
    sample.setFont(shownFont(button.font(), ordinaryFont()));
    sample.clear();
    for (const std::string& title : button.itemTitles())
        sample.addItem(QString::fromStdString(title));
    return sizeOf(sample.sizeHint());
}

double ControlSizes::tableRowHeight()
{
    if (!rowHeight_)
        rowHeight_ = std::max(kLowestRow, QFontMetrics(ordinaryFont()).height() + kRowPadding);
    return *rowHeight_;
}

double ControlSizes::scrollerWidth(bool isSmall)
{
    const int extent = QApplication::style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    return isSmall ? std::max(kNarrowestScroller, static_cast<int>(std::lround(extent * kSmallScrollerPart))) : extent;
}

double ControlSizes::scrollViewBorder()
{
    if (!border_) {
        QFrame sample;
        sample.setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
        border_ = sample.frameWidth();
    }
    return *border_;
}

NSEdgeInsets ControlSizes::tabViewInsets()
{
    if (insets_)
        return *insets_;
    QTabBar bar;
    bar.setFont(ordinaryFont());
    bar.addTab(QStringLiteral("Tab"));
    // The insets are the same for every size.
    constexpr QRect kWhole(0, 0, 400, 300);
    QStyleOptionTabWidgetFrame option;
    option.initFrom(&bar);
    option.rect = kWhole;
    option.lineWidth = QApplication::style()->pixelMetric(QStyle::PM_DefaultFrameWidth);
    option.shape = QTabBar::RoundedNorth;
    option.tabBarSize = bar.sizeHint();
    option.tabBarRect = QRect(QPoint(), option.tabBarSize);
    option.selectedTabRect = bar.tabRect(0);
    const QRect inside = QApplication::style()->subElementRect(QStyle::SE_TabWidgetTabContents, &option);
    insets_ = { static_cast<double>(inside.top()), static_cast<double>(inside.left()),
                static_cast<double>(kWhole.height() - inside.top() - inside.height()),
                static_cast<double>(kWhole.width() - inside.left() - inside.width()) };
    return *insets_;
}

} // namespace quillbox
