#include "MenuDrawing.h"

#include <QGuiApplication>
#include <QStringList>

namespace quillbox {

namespace {

    bool isAmong(const char* desktop, const QString& desktops)
    {
        return desktops.split(u':').contains(QLatin1String(desktop), Qt::CaseInsensitive);
    }

} // namespace

bool opensMenuUnlessActivated(const QString& desktops)
{
    return isAmong("GNOME", desktops) || isAmong("KDE", desktops);
}

MenuDrawing menuDrawing(const QString& platform, const QString& sessionType, const QString& desktops)
{
    const bool isByHost = platform.startsWith(QLatin1String("wayland")) || sessionType == QLatin1String("wayland")
        || isAmong("GNOME", desktops);
    return isByHost ? MenuDrawing::byHost : MenuDrawing::byUs;
}

MenuDrawing menuDrawingOfSession()
{
    return menuDrawing(QGuiApplication::platformName(), qEnvironmentVariable("XDG_SESSION_TYPE"),
                       qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
}

} // namespace quillbox
