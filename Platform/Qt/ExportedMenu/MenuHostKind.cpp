#include "MenuHostKind.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace quillbox {

namespace {

    // The number of lines in a label that is higher than any screen.
    constexpr qsizetype kPlaceholderLines = 300;

    // The height of a row in one column, as a multiple of its text's height.
    constexpr double kRowHeight = 2.4;

} // namespace

MenuHosts::MenuHosts(const QString& desktops)
    : usual_(desktops.split(u':').contains(QLatin1String("KDE"), Qt::CaseInsensitive) ? MenuHostKind::plasma
                                                                                      : MenuHostKind::standard)
{
}

MenuHostKind MenuHosts::askedForLayout(const QString& connection, const QStringList& propertyNames)
{
    if (propertyNames == QStringList { QStringLiteral("type"), QStringLiteral("children-display") })
        gnomeShells_.insert(connection);
    return kind(connection);
}

MenuHostKind MenuHosts::kind(const QString& connection) const
{
    return gnomeShells_.contains(connection) ? MenuHostKind::gnomeShell : usual_;
}

bool leavesChildrenDisplayToProperties(MenuHostKind host)
{
    return host == MenuHostKind::gnomeShell;
}

bool needsPlaceholders(MenuHostKind host)
{
    return host == MenuHostKind::gnomeShell;
}

bool losesOneOfTwoLayouts(MenuHostKind host)
{
    return host == MenuHostKind::gnomeShell;
}

bool leavesRowsInTheirPlaces(MenuHostKind host)
{
    return host == MenuHostKind::gnomeShell;
}

bool placesEmptyLevels(MenuHostKind host)
{
    return host == MenuHostKind::plasma;
}

bool showsBusyPointer(MenuHostKind host)
{
    return host == MenuHostKind::gnomeShell;
}

bool showsOneColumn(MenuHostKind host)
{
    return host == MenuHostKind::gnomeShell;
}

std::size_t roomForRowsInOneColumn()
{
    const int rowHeight = qRound(kRowHeight * QFontMetrics(QGuiApplication::font()).height());
    const QScreen* screen = QGuiApplication::primaryScreen();
    return static_cast<std::size_t>(screen ? std::max(1, screen->geometry().height() / std::max(1, rowHeight)) : 1);
}

QString placeholderLabel()
{
    return QChar(0x2026) + QString(kPlaceholderLines, u'\n');
}

QString escapedLabel(QString title, MenuHostKind host)
{
    const QString mark = QStringLiteral("_");
    if (host != MenuHostKind::gnomeShell)
        return title.replace(mark, QStringLiteral("__"));
    // The shell removes the first underscore that is followed by another character.
    for (qsizetype i = 0; i + 1 < title.size(); ++i) {
        if (title[i] == u'_' && title[i + 1] != u'_')
            return title.insert(i, mark);
    }
    return title;
}

} // namespace quillbox
