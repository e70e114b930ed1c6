#include "ApplicationBundles.h"
#include "XdgTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace quillbox {
namespace {

    using testing::ElementsAre;

    struct SampleEntry {
        const char* id;
        const char* title;
        const char* more;
    };

    // One or two of each kind that desktops' packages install, all on one machine.
    // clang-format off
    constexpr SampleEntry kInstalled[] = {
        { "gnome-sound-panel", "Sound", "NoDisplay=true\nCategories=X-GNOME-Settings-Panel;\nOnlyShowIn=GNOME;Unity;" },
        { "gnome-background-panel", "Desk", "NoDisplay=true\nCategories=X-GNOME-Settings-Panel;\nOnlyShowIn=GNOME;" },
        { "org.gnome.Settings", "Settings", "Categories=GNOME;GTK;Settings;\nOnlyShowIn=GNOME;Unity;" },
        { "budgie-sound-panel", "Sound", "NoDisplay=true\nCategories=X-GNOME-Settings-Panel;\nOnlyShowIn=Budgie" },
        { "budgie-control-center", "Budgie Control Center", "Categories=GNOME;GTK;Settings;\nOnlyShowIn=Budgie" },
        { "kcm_mouse", "Mouse", "NoDisplay=true\nX-KDE-AliasFor=systemsettings" },
        { "kcm_other", "Other", "NoDisplay=true\nX-KDE-AliasFor=discover" },
        { "systemsettings", "System Settings", "Categories=Qt;KDE;Settings;\nOnlyShowIn=KDE;" },
        { "xfce-mouse-settings", "Mouse", "Categories=XFCE;Settings;X-XFCE-SettingsDialog;\nOnlyShowIn=XFCE;" },
        { "xfce-hidden", "Hidden", "NoDisplay=true\nCategories=Settings;X-XFCE-SettingsDialog;\nOnlyShowIn=XFCE;" },
        { "xfce-settings-manager", "Settings Manager", "Categories=X-XFCE;Settings;\nOnlyShowIn=XFCE;" },
        { "cinnamon-settings-sound", "Sound", "Categories=Settings;\nOnlyShowIn=X-Cinnamon;" },
        { "cinnamon-applet", "Applets", "X-Cinnamon-Settings-Panel=applets\nOnlyShowIn=X-Cinnamon;GNOME;" },
        { "cinnamon-settings", "System Settings", "Categories=Settings;\nOnlyShowIn=X-Cinnamon;" },
        { "mate-keyboard", "Keyboard", "Categories=GTK;Settings;HardwareSettings;\nOnlyShowIn=MATE;" },
        { "mate-theme-installer", "Theme", "NoDisplay=true\nCategories=GTK;Settings;\nOnlyShowIn=MATE;" },
        { "matecc", "Control Center", "Categories=GTK;Settings;\nOnlyShowIn=MATE;" },
        { "lxqt-config-input", "Keyboard and Mouse", "Categories=Qt;Settings;LXQt;\nOnlyShowIn=LXQt;" },
        { "lxqt-config", "LXQt Configuration Center", "Categories=Settings;Qt;LXQt;\nOnlyShowIn=LXQt;" },
        { "nm-connection-editor", "Network Connections", "Categories=GTK;Settings;Network;" },
    };
    // clang-format on

    // Lists are in the order of names, with a comma and a blank between them.
    struct DesktopCase {
        const char* name;
        std::vector<std::string> desktops;
        const char* panels;
        // Besides "Network Connections", which every desktop shows.
        const char* applications;
        // Empty where the desktop has no settings program.
        std::string program;
        friend void PrintTo(const DesktopCase& row, std::ostream* out) { *out << row.name; }
    };

    class SettingsOf : public testing::TestWithParam<DesktopCase> { };

    std::string bundlesIn(const std::string& directory)
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(directory)) {
            if (entry.path().stem() != "Network Connections")
                names.push_back(entry.path().stem());
        }
        std::sort(names.begin(), names.end());
        std::string list;
        for (const std::string& name : names)
            list.append(list.empty() ? "" : ", ").append(name);
        return list;
    }

    TEST_P(SettingsOf, TheDesktop)
    {
        const DesktopCase& row = GetParam();
        XdgTree tree;
        tree.environment.desktops = row.desktops;
        for (const SampleEntry& entry : kInstalled)
            tree.writeApplication("system", std::string(entry.id) + ".desktop", entry.title, entry.more);
        ApplicationBundles bundles(tree.environment, nullptr);
        bundles.bringUpToDate();
        EXPECT_EQ(bundlesIn(bundles.directory(BundleDomain::system, BundleKind::preferencePane)), row.panels);
        EXPECT_EQ(bundlesIn(bundles.directory(BundleDomain::system, BundleKind::application)), row.applications);
        EXPECT_EQ(tree.info("System/Applications/System Settings.app", "CFBundleIdentifier"),
                  row.program.empty() ? "(no bundle)" : row.program);
        EXPECT_EQ(bundles.settingsProgramEntry().value_or(""),
                  row.program.empty() ? "" : tree.path("system/applications/" + row.program));
    }

    // clang-format off
    INSTANTIATE_TEST_SUITE_P(Table, SettingsOf, testing::Values(
        DesktopCase { "GNOME", { "GNOME" }, "gnome-background-panel.desktop, gnome-sound-panel.desktop",
                      "Applets, Settings, System Settings", "org.gnome.Settings.desktop" },
        DesktopCase { "Ubuntu", { "ubuntu", "GNOME" }, "gnome-background-panel.desktop, gnome-sound-panel.desktop",
                      "Applets, Settings, System Settings", "org.gnome.Settings.desktop" },
        DesktopCase { "Unity", { "Unity", "Unity7" }, "gnome-sound-panel.desktop", "Settings, System Settings",
                      "org.gnome.Settings.desktop" },
        DesktopCase { "KDE", { "KDE" }, "kcm_mouse.desktop", "System Settings", "systemsettings.desktop" },
        DesktopCase { "XFCE", { "XFCE" }, "xfce-mouse-settings.desktop", "Settings Manager, System Settings",
                      "xfce-settings-manager.desktop" },
        DesktopCase { "Cinnamon", { "X-Cinnamon" }, "cinnamon-applet.desktop, cinnamon-settings-sound.desktop",
                      "System Settings", "cinnamon-settings.desktop" },
        DesktopCase { "MATE", { "MATE" }, "mate-keyboard.desktop", "Control Center, System Settings",
                      "matecc.desktop" },
        DesktopCase { "LXQt", { "LXQt" }, "lxqt-config-input.desktop", "LXQt Configuration Center, System Settings",
                      "lxqt-config.desktop" },
        DesktopCase { "Budgie", { "Budgie", "GNOME" }, "budgie-sound-panel.desktop",
                      "Applets, Budgie Control Center, Settings, System Settings", "budgie-control-center.desktop" },
        DesktopCase { "NoDesktop", {}, "", "", "" }),
        [](const auto& row) { return std::string(row.param.name); });
    // clang-format on

    TEST(SettingsPanels, AreNamedByTheirBundles)
    {
        XdgTree tree;
        tree.environment.desktops = { "KDE" };
        tree.environment.languages = { "de" };
        tree.writeApplication("user", "kcm_mouse.desktop", "Mouse",
                              "Name[de]=Maus\nNoDisplay=true\nX-KDE-AliasFor=systemsettings");
        tree.writeApplication("local", "systemsettings.desktop", "System Settings", "Name[de]=Systemeinstellungen");
        ApplicationBundles(tree.environment, nullptr).bringUpToDate();
        EXPECT_THAT(tree.bundles(),
                    ElementsAre("Local/Applications/Systemeinstellungen.app", "System/Applications/System Settings.app",
                                "User/PreferencePanes/kcm_mouse.desktop.prefPane"));
        EXPECT_EQ(tree.info("User/PreferencePanes/kcm_mouse.desktop.prefPane", "CFBundleName"), "Maus");
    }

} // namespace
} // namespace quillbox
