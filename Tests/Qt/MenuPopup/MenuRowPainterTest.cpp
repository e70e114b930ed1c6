#include "MenuRowPainter.h"

#include "NSMenu.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QWidget>

using namespace quillbox;

namespace {

// Makes rows as wide as their text asks for, whatever size of contents it is told, as newer styles do.
class TextMeasuringStyle final : public QProxyStyle {
public:
    TextMeasuringStyle() : QProxyStyle(QStyleFactory::create("Fusion")) { }
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override
    {
        const auto* row = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (type != CT_MenuItem || !row || row->menuItemType == QStyleOptionMenuItem::Separator)
            return QProxyStyle::sizeFromContents(type, option, size, widget);
        const QSize text = row->fontMetrics.size(Qt::TextShowMnemonic, row->text);
        return QProxyStyle::sizeFromContents(type, option, text, widget);
    }
};

QStyle* makeStyle(const std::string& name)
{
    return name == "TextMeasuring" ? new TextMeasuringStyle : QStyleFactory::create(QString::fromStdString(name));
}

class RowsInStyle : public testing::TestWithParam<const char*> { };

// The columns of a row in which two ways to draw it differ, first and last; (-1, -1) where they don't.
std::pair<int, int> columnsThatDiffer(const QImage& one, const QImage& other)
{
    std::pair<int, int> columns { -1, -1 };
    for (int x = 0; x < one.width(); ++x)
        for (int y = 0; y < one.height(); ++y)
            if (one.pixel(x, y) != other.pixel(x, y)) {
                columns = { columns.first < 0 ? x : columns.first, x };
                break;
            }
    return columns;
}

TEST_P(RowsInStyle, HaveRoomForTheirTitlesAndTheArrow)
{
    const std::unique_ptr<QStyle> style(makeStyle(GetParam()));
    if (!style)
        GTEST_SKIP() << "the style " << GetParam() << " is not installed";
    QWidget widget;
    widget.setStyle(style.get());
    const auto submenu = std::make_shared<NSMenu>("below");
    const auto draw = [&](const std::string& title, bool hasArrow, int width, double scale) {
        const MenuRowPainter painter(widget);
        NSMenuItem item(title);
        if (hasArrow)
            item.setSubmenu(submenu);
        QImage image((QSizeF(width, painter.ordinaryHeight()) * scale).toSize(), QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        // Neither of the colours in which styles draw text.
        image.fill(Qt::darkGreen);
        QPainter canvas(&image);
        painter.paint(canvas, QRect(0, 0, width, painter.ordinaryHeight()), item, false, true);
        canvas.end();
        item.setSubmenu(nullptr);
        return image;
    };
    for (double size = 7; size < 16; size += 0.7)
        for (const auto hinting : { QFont::PreferNoHinting, QFont::PreferFullHinting }) {
            QFont font = widget.font();
            font.setPointSizeF(size);
            font.setHintingPreference(hinting);
            widget.setFont(font);
            for (const char* title :
                 { "Papers & <b>Letters</b>", "Illiterate file.txt", "Quillbox Preferences...", "W", "\u05d0" })
                for (const double scale : { 1.0, 1.25, 2.0 }) {
                    SCOPED_TRACE(testing::Message() << title << ", " << size << " points, at " << scale);
                    const int width = MenuRowPainter(widget).widthOf(NSMenuItem(title));
                    const auto text = columnsThatDiffer(draw(title, true, width, scale), draw("", true, width, scale));
                    const auto arrow = columnsThatDiffer(draw("", true, width, scale), draw("", false, width, scale));
                    const auto unbounded =
                        columnsThatDiffer(draw(title, true, width + 200, scale), draw("", true, width + 200, scale));
                    EXPECT_GE(text.first, 0);
                    EXPECT_EQ(text, unbounded);
                    EXPECT_GT(arrow.first, text.second);
                }
        }
    widget.setStyle(nullptr);
}

INSTANTIATE_TEST_SUITE_P(Styles, RowsInStyle,
                         testing::Values("Fusion", "Windows", "TextMeasuring", "Adwaita", "Breeze", "kvantum"),
                         [](const auto& style) { return std::string(style.param); });

} // namespace
