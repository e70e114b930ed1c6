#include "MenuDrawing.h"

#include <QGuiApplication>
#include <QStringList>

namespace quillbox {

bool waitsForSecondClick(const QString& desktops)
{
    return desktops.split(u':').contains(QLatin1String("GNOME"), Qt::CaseInsensitive);
}

MenuDrawing menuDrawing(const QString& platform, const QString& sessionType, const QString& desktops)
{
    const bool isByHost = platform.startsWith(QLatin1String("wayland")) || sessionType == QLatin1String("wayland")
        || waitsForSecondClick(desktops);
    return isByHost ? MenuDrawing::byHost : MenuDrawing::byUs;
}

MenuDrawing menuDrawingOfSession()
{
    return menuDrawing(QGuiApplication::platformName(), qEnvironmentVariable("XDG_SESSION_TYPE"),
                       qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
}

} // namespace quillbox
