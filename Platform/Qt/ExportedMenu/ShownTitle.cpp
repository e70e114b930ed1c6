#include "ShownTitle.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace quillbox {

namespace {

    // Besides its title, a row has an icon, an arrow and margins.
    constexpr int kShareOfScreen = 3;
    constexpr int kRestOfRow = 90;

    int widestTitle()
    {
        int narrowest = 4000;
        for (const QScreen* screen : QGuiApplication::screens())
            narrowest = std::min(narrowest, screen->geometry().width());
        return std::max(narrowest / kShareOfScreen - kRestOfRow, 160);
    }

} // namespace

QString shownTitle(const QString& title, TitleWidth width)
{
    const int limit = width == TitleWidth::whole ? widestTitle() : widestTitle() / 2;
    const QFontMetrics metrics(QGuiApplication::font());
    // Most titles are short, and no character is wider than two of the widest letter.
    if (title.size() * 2 * metrics.maxWidth() <= limit)
        return title;
    return metrics.elidedText(title, Qt::ElideMiddle, limit);
}

} // namespace quillbox
