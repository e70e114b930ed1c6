#include "DesktopAppearance.h"

#include "MenuWorld.h"
#include "PrivateBus.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDBusVariant>

using namespace quillbox;

namespace {

const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");

// The desktop's portal with the settings of org.freedesktop.appearance.
class FakePortal final : public QDBusVirtualObject {
public:
    explicit FakePortal(QVariantMap settings) : settings_(std::move(settings))
    {
        client_.connection().registerVirtualObject(kPath, this);
        client_.connection().registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    void change(const QString& key, uint value)
    {
        settings_[key] = value;
        client_.emitSignal(kPath, kInterface, "SettingChanged",
                           { "org.freedesktop.appearance", key, QVariant::fromValue(QDBusVariant(value)) });
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override
    {
        const QString key = call.arguments().value(1).toString();
        if (call.member() != QLatin1String("Read") || !settings_.contains(key))
            return connection.send(call.createErrorReply("org.freedesktop.portal.Error.NotFound", key));
        // Wrapped twice, as real ones do.
        const QVariant inner = QVariant::fromValue(QDBusVariant(settings_[key]));
        return connection.send(call.createReply(QVariant::fromValue(QDBusVariant(inner))));
    }

private:
    BusClient client_;
    QVariantMap settings_;
};

double readability()
{
    const QPalette colours = QApplication::palette();
    return contrast(colours.color(QPalette::Window), colours.color(QPalette::WindowText));
}

TEST(DesktopAppearance, FollowsThePortalFromTheStartAndLater)
{
    const PrivateBus bus;
    const QPalette toolkits = QApplication::palette();
    ASSERT_FALSE(isDark(toolkits));
    {
        FakePortal portal({ { "color-scheme", 1U } });
        const DesktopAppearance appearance;
        MenuWorld world { { { "top", "row" } } };
        ASSERT_TRUE(world.open());
        EXPECT_TRUE(waitUntil([] { return isDark(QApplication::palette()); }));
        // The open menu as well.
        const auto isMenuDark = [] { return isDark(PopupUser::popups()[0]->palette()); };
        EXPECT_TRUE(waitUntil(isMenuDark));
        portal.change("contrast", 1);
        EXPECT_TRUE(waitUntil([] { return readability() > 20; }));
        portal.change("color-scheme", 0);
        EXPECT_TRUE(waitUntil([] { return !isDark(QApplication::palette()); }));
        EXPECT_GT(readability(), 15);
        portal.change("contrast", 0);
        EXPECT_TRUE(waitUntil([&] { return QApplication::palette() == toolkits; }));
        EXPECT_TRUE(waitUntil([&] { return !isMenuDark(); }));
        portal.change("color-scheme", 1);
        EXPECT_TRUE(waitUntil([] { return isDark(QApplication::palette()); }));
    }
    EXPECT_EQ(QApplication::palette(), toolkits);
}

TEST(DesktopAppearance, AsksAPortalThatStartsLater)
{
    const PrivateBus bus;
    const DesktopAppearance appearance;
    const FakePortal portal({ { "color-scheme", 1U } });
    EXPECT_TRUE(waitUntil([] { return isDark(QApplication::palette()); }));
}

TEST(DesktopAppearance, FollowsPlasmasColoursWhenItTellsOfThem)
{
    const PrivateBus bus;
    const QTemporaryDir home;
    const QByteArray formerHome = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    const auto set = [&](const QByteArray& window, const QByteArray& text) {
        QFile file(home.filePath("kdeglobals"));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write("[Colors:Window]\nBackgroundNormal=" + window + "\nForegroundNormal=" + text + "\n");
    };
    set("42,46,50", "252,252,252");
    {
        const DesktopAppearance appearance;
        EXPECT_EQ(QApplication::palette().color(QPalette::Window), QColor(42, 46, 50));
        set("239,240,241", "35,38,41");
        BusClient().emitSignal("/KGlobalSettings", "org.kde.KGlobalSettings", "notifyChange", { 0, 0 });
        EXPECT_TRUE(waitUntil([] { return QApplication::palette().color(QPalette::Window) == QColor(239, 240, 241); }));
    }
    qputenv("XDG_CONFIG_HOME", formerHome);
    qunsetenv("XDG_CURRENT_DESKTOP");
}

} // namespace
