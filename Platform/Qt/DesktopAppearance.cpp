#include "DesktopAppearance.h"

#include <QApplication>
#include <QIcon>
#include <QSettings>
#include <QStandardPaths>

#include <utility>

namespace quillbox {

namespace {

    constexpr int kUntilSettled = 200; // in milliseconds

    bool isPlasma()
    {
        return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains(QLatin1String("KDE"));
    }

    // Returns the theme in GTK's own settings, for sessions in which no program shares them.
    QString themeInGtkSettings()
    {
        const QString file = QStandardPaths::locate(QStandardPaths::GenericConfigLocation, "gtk-3.0/settings.ini");
        if (file.isEmpty())
            return {};
        const QSettings settings(file, QSettings::IniFormat);
        const QString theme = settings.value(QStringLiteral("Settings/gtk-theme-name")).toString();
        const bool prefersDark = settings.value(QStringLiteral("Settings/gtk-application-prefer-dark-theme")).toBool();
        return prefersDark ? theme + QStringLiteral("-dark") : theme;
    }

} // namespace

DesktopAppearance::DesktopAppearance() : xSettings_(XSettings::create())
{
    // In a session that names no icon theme, files and directories would have no icons.
    QIcon::setFallbackThemeName(QStringLiteral("Adwaita"));
    changed_.setSingleShot(true);
    changed_.setInterval(kUntilSettled);
    QObject::connect(&changed_, &QTimer::timeout, &changed_, [this] { update(); });
    const auto startWaiting = [this] { changed_.start(); };
    if (bus_.isConnected()) {
        portal_ = std::make_unique<AppearancePortal>(bus_.connection());
        portal_->onChanged = startWaiting;
        // Plasma announces changes of colours and of icons this way; other desktops send neither signal.
        bus_.connection().connect(QString(), QStringLiteral("/KGlobalSettings"),
                                  QStringLiteral("org.kde.KGlobalSettings"), QStringLiteral("notifyChange"), &changed_,
                                  SLOT(start()));
        bus_.connection().connect(QString(), QStringLiteral("/KIconLoader"), QStringLiteral("org.kde.KIconLoader"),
                                  QStringLiteral("iconChanged"), &changed_, SLOT(start()));
    }
    if (xSettings_)
        xSettings_->onChanged = startWaiting;
    update();
}

DesktopAppearance::~DesktopAppearance()
{
    QIcon::setThemeName({});
    if (hasOwnPalette_)
        QApplication::setPalette({});
}

ColourWish DesktopAppearance::wish() const
{
    const QByteArray shared = xSettings_ ? xSettings_->texts().value("Net/ThemeName") : QByteArray();
    ColourWish wish = wishOfGtkTheme(shared.isEmpty() ? themeInGtkSettings() : QString::fromUtf8(shared));
    if (portal_ && portal_->scheme() != AppearancePortal::Scheme::noPreference)
        wish.isDark = portal_->scheme() == AppearancePortal::Scheme::dark;
    wish.isHighContrast = wish.isHighContrast || (portal_ && portal_->wantsHighContrast());
    return wish;
}

std::optional<QPalette> DesktopAppearance::ownPalette(const QPalette& given) const
{
    const QString file = isPlasma()
        ? QStandardPaths::locate(QStandardPaths::GenericConfigLocation, QStringLiteral("kdeglobals"))
        : QString();
    const auto plasma = file.isEmpty() ? std::nullopt : plasmaPalette(file);
    if (plasma)
        return looksLike(*plasma, given) ? std::nullopt : plasma;
    return paletteFor(wish(), given);
}

void DesktopAppearance::update()
{
    // First the toolkit's own choice is restored.
    if (std::exchange(hasOwnPalette_, false))
        QApplication::setPalette({});
    if (const auto own = ownPalette(QApplication::palette())) {
        QApplication::setPalette(*own);
        hasOwnPalette_ = true;
    }
    QIcon::setThemeName({});
    const QString theme = QIcon::themeName();
    const QString readable = iconThemeFor(theme, isDark(QApplication::palette()), QIcon::themeSearchPaths());
    if (readable != theme)
        QIcon::setThemeName(readable);
}

} // namespace quillbox
