#include "Appearance.h"

#include <QApplication>
#include <QFontInfo>
#include <QScreen>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

#include <cmath>
#include <cstdlib>
#include <vector>

namespace quillbox {

namespace {

    // The small size, as a fraction of the default size.
    constexpr double kSmallPart = 11.0 / 13;
    // Colours are compared by their grey, 0 to 255.
    constexpr int kDarkBelow = 128;
    constexpr int kReadableDifference = 80;

    void setSize(QFont& font, double size)
    {
        if (size > 0)
            font.setPixelSize(static_cast<int>(std::lround(size)));
        else if (size == FontAttribute::kSmallSize && font.pixelSize() > 0)
            font.setPixelSize(static_cast<int>(std::lround(font.pixelSize() * kSmallPart)));
        else if (size == FontAttribute::kSmallSize)
            font.setPointSizeF(font.pointSizeF() * kSmallPart);
    }

} // namespace

QFont ordinaryFont()
{
    QFont font = QApplication::font();
    // On Wayland, a font that is measured without a window may get another resolution than that of the windows.
    constexpr double kPointsInInch = 72;
    QFont inch = font;
    inch.setPointSizeF(kPointsInInch);
    const QScreen* screen = QGuiApplication::primaryScreen();
    const int resolution = screen ? static_cast<int>(std::lround(screen->logicalDotsPerInch())) : 0;
    if (resolution > 0 && font.pointSizeF() > 0 && QFontInfo(inch).pixelSize() != resolution)
        font.setPixelSize(static_cast<int>(std::lround(font.pointSizeF() * resolution / kPointsInInch)));
    return font;
}

QFont shownFont(const FontAttribute& font, const QFont& ordinary)
{
    QFont result = ordinary;
    setSize(result, font.size);
    if (font.weight == FontAttribute::Weight::bold)
        result.setWeight(QFont::Bold);
    else if (font.weight == FontAttribute::Weight::light)
        result.setWeight(QFont::Light);
    return result;
}

QColor shownColour(CGColor colour, const QPalette& palette)
{
    switch (colour) {
    case CGColor::clear:
        return Qt::transparent;
    case CGColor::label:
        return palette.color(QPalette::WindowText);
    case CGColor::systemRed:
        return palette.color(QPalette::Window).lightness() < kDarkBelow ? QColor(255, 110, 100) : QColor(190, 20, 10);
    case CGColor::controlAccent:
        break;
    }
    return palette.color(QPalette::Highlight);
}

QColor shownLinkColour(const QPalette& palette)
{
    const int background = qGray(palette.color(QPalette::Window).rgb());
    const QColor link = palette.color(QPalette::Link);
    if (std::abs(qGray(link.rgb()) - background) >= kReadableDifference)
        return link;
    return background < kDarkBelow ? QColor(110, 175, 255) : QColor(0, 70, 190);
}

QRect shownRect(NSRect rect)
{
    const auto pixel = [](double edge) { return static_cast<int>(std::lround(edge)); };
    const QPoint origin(pixel(rect.minX()), pixel(rect.minY()));
    return { origin, QSize(pixel(rect.maxX()) - origin.x(), pixel(rect.maxY()) - origin.y()) };
}

void setDocumentText(QTextDocument& document, const AttributedString& text, const QFont& font, const QColor& linkColour)
{
    document.setUndoRedoEnabled(false);
    document.setDocumentMargin(0);
    document.setDefaultFont(font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document.setDefaultTextOption(option);
    document.clear();
    QTextCursor cursor(&document);
    for (const AttributedString::Run& run : text.runs()) {
        QTextCharFormat format;
        if (run.attributes.font)
            format.setFont(shownFont(*run.attributes.font, font));
        if (run.attributes.link) {
            format.setAnchor(true);
            format.setAnchorHref(QString::fromStdString(*run.attributes.link));
            format.setForeground(linkColour);
            format.setFontUnderline(true);
        }
        cursor.insertText(QString::fromStdString(run.text), format);
    }
}

void reflowParagraphs(QTextDocument& document, double width)
{
    document.setTextWidth(-1);
    // Asking for the size lays it out.
    static_cast<void>(document.size());
    const auto isTooLong = [width](const QTextBlock& line) {
        return line.layout()->lineCount() > 0 && line.layout()->lineAt(0).naturalTextWidth() > width;
    };
    std::vector<int> breaks;
    for (QTextBlock first = document.begin(); first.isValid(); first = first.next()) {
        bool needsReflow = isTooLong(first);
        std::vector<int> inParagraph;
        while (first.length() > 1 && first.next().length() > 1) {
            first = first.next();
            needsReflow |= isTooLong(first);
            inParagraph.push_back(first.position() - 1);
        }
        if (needsReflow)
            breaks.insert(breaks.end(), inParagraph.begin(), inParagraph.end());
    }
    QTextCursor cursor(&document);
    for (const int place : breaks) {
        cursor.setPosition(place);
        cursor.deleteChar();
        cursor.insertText(QStringLiteral(" "));
    }
}

} // namespace quillbox
