#include "XdgTree.h"

#include <gmock/gmock.h>

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

    // The bundles of the system's in that directory, with a comma and a blank between them.
    std::string titles(const XdgTree& tree, const std::string& directory)
    {
        std::string list;
        for (const std::filesystem::path bundle : tree.bundles()) {
            if (bundle.parent_path() == "System/" + directory && bundle.stem() != "Network Connections")
                list.append(list.empty() ? "" : ", ").append(bundle.stem().replace_extension());
        }
        return list;
    }

    TEST(SettingsPanels, AreThoseOfTheDesktop)
    {
        struct {
            std::vector<std::string> desktops;
            const char* panels;
            // Besides "Network Connections", which every desktop shows.
            const char* applications;
            // The settings program; empty where the desktop has none.
            std::string program;
        } const rows[] = {
            { { "GNOME" },
              "gnome-background-panel, gnome-sound-panel",
              "Applets, Settings, System Settings",
              "org.gnome.Settings" },
            { { "ubuntu", "GNOME" },
              "gnome-background-panel, gnome-sound-panel",
              "Applets, Settings, System Settings",
              "org.gnome.Settings" },
            { { "Unity", "Unity7" }, "gnome-sound-panel", "Settings, System Settings", "org.gnome.Settings" },
            { { "KDE" }, "kcm_mouse", "System Settings", "systemsettings" },
            { { "XFCE" }, "xfce-mouse-settings", "Settings Manager, System Settings", "xfce-settings-manager" },
            { { "X-Cinnamon" }, "cinnamon-applet, cinnamon-settings-sound", "System Settings", "cinnamon-settings" },
            { { "MATE" }, "mate-keyboard", "Control Center, System Settings", "matecc" },
            { { "LXQt" }, "lxqt-config-input", "LXQt Configuration Center, System Settings", "lxqt-config" },
            { { "Budgie", "GNOME" },
              "budgie-sound-panel",
              "Applets, Budgie Control Center, Settings, System Settings",
              "budgie-control-center" },
            { {}, "", "", "" },
        };
        for (const auto& row : rows) {
            SCOPED_TRACE(testing::PrintToString(row.desktops));
            XdgTree tree;
            tree.environment.desktops = row.desktops;
            for (const SampleEntry& entry : kInstalled)
                tree.writeApplication("system", std::string(entry.id) + ".desktop", entry.title, entry.more);
            tree.update();
            EXPECT_EQ(titles(tree, "PreferencePanes"), row.panels);
            EXPECT_EQ(titles(tree, "Applications"), row.applications);
            const std::string entry = row.program + ".desktop";
            EXPECT_EQ(tree.info("System/Applications/System Settings.app", "CFBundleIdentifier"),
                      row.program.empty() ? "(no bundle)" : entry);
            EXPECT_EQ(tree.keeper().settingsProgramEntry().value_or(""),
                      row.program.empty() ? "" : tree.path("system/applications/" + entry));
        }
    }

    TEST(SettingsPanels, AreNamedByTheirBundles)
    {
        XdgTree tree;
        tree.environment.desktops = { "KDE" };
        tree.environment.languages = { "de" };
        tree.writeApplication("user", "kcm_mouse.desktop", "Mouse",
                              "Name[de]=Maus\nNoDisplay=true\nX-KDE-AliasFor=systemsettings");
        tree.writeApplication("local", "systemsettings.desktop", "System Settings", "Name[de]=Systemeinstellungen");
        tree.update();
        EXPECT_THAT(tree.bundles(),
                    ElementsAre("Local/Applications/Systemeinstellungen.app", "System/Applications/System Settings.app",
                                "User/PreferencePanes/kcm_mouse.desktop.prefPane"));
        EXPECT_EQ(tree.info("User/PreferencePanes/kcm_mouse.desktop.prefPane", "CFBundleName"), "Maus");
    }

} // namespace
} // namespace quillbox
