#include "CheckBox.h"

#include "Palettes.h"

#include <QImage>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionButton>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace quillbox {

namespace {

    // What guidelines for accessible programs ask of the parts of controls.
    constexpr double kVisibleContrast = 3;
    constexpr double kOutlinePart = 0.6;
    constexpr double kCorner = 2;

    QString wrapped(const QString& title, const QFont& font, double width)
    {
        QTextLayout layout(title, font);
        layout.beginLayout();
        QStringList lines;
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(std::max(1.0, width));
            lines.append(title.mid(line.textStart(), line.textLength()).trimmed());
        }
        layout.endLayout();
        return lines.join(QChar('\n'));
    }

    // Whether any part of what the style paints for the box stands out from the window.
    bool canBeSeen(const QStyle& style, QStyleOptionButton option, const QWidget& widget)
    {
        option.rect.moveTo(0, 0);
        const QColor window = widget.palette().color(QPalette::Window);
        QImage image(option.rect.size(), QImage::Format_RGB32);
        image.fill(window);
        QPainter painter(&image);
        style.drawPrimitive(QStyle::PE_IndicatorCheckBox, &option, &painter, &widget);
        painter.end();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (contrast(image.pixelColor(x, y), window) >= kVisibleContrast)
                    return true;
            }
        }
        return false;
    }

} // namespace

void CheckBox::showTitle(const QString& title)
{
    title_ = title;
    setAccessibleName(QString(title).replace(QStringLiteral("&&"), QStringLiteral("&")));
    sizeWithin(width());
}

QSize CheckBox::sizeWithin(double widthLimit)
{
    setText(title_);
    const QSize whole = sizeHint();
    if (whole.width() <= widthLimit)
        return whole;
    const double besideTitle = whole.width() - fontMetrics().size(Qt::TextShowMnemonic, title_).width();
    setText(wrapped(title_, font(), widthLimit - besideTitle));
    return { static_cast<int>(std::floor(widthLimit)), sizeHint().height() };
}

void CheckBox::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->ignore();
    else
        QCheckBox::keyPressEvent(event);
}

void CheckBox::paintEvent(QPaintEvent* event)
{
    QCheckBox::paintEvent(event);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.rect = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this);
    if (isChecked() || !isEnabled() || canBeSeen(*style(), option, *this))
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor outline = palette().color(QPalette::WindowText);
    outline.setAlphaF(kOutlinePart);
    painter.setPen(outline);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
}

void CheckBox::resizeEvent(QResizeEvent* event)
{
    QCheckBox::resizeEvent(event);
    sizeWithin(width());
}

} // namespace quillbox
