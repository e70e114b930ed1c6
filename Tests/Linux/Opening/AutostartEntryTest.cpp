#include "AutostartEntry.h"

#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace quillbox;

namespace {

const std::string kUser = "user/autostart/q.desktop";
const std::string kSystem = "system/autostart/q.desktop";

AutostartEntry entryIn(const TemporaryDirectory& directory)
{
    XdgEnvironment environment;
    environment.desktops = { "XFCE" };
    environment.programDirectories = { "/usr/bin" };
    return { environment, { { directory.path("user"), directory.path("system") } }, "q", "/usr/bin/env" };
}

// An entry with these lines; none for "".
void write(const TemporaryDirectory& directory, const std::string& name, const std::string& lines)
{
    if (!lines.empty())
        directory.writeFile(name, "[Desktop Entry]\nType=Application\nName=Q\nExec=env\n" + lines);
}

TEST(AutostartEntry, IsOnWhereTheDesktopStartsItAndKeepsWhatElseTheEntrySays)
{
    const struct {
        const char* user;
        const char* system;
        bool isOn;
        const char* afterTurning; // What the person's entry then says; empty for no entry.
    } cases[] = {
        { "", "", false, "X-GNOME-Autostart-enabled=true" },
        { "X-Mine=1\n", "", true, "X-Mine=1\nHidden=true" },
        { "Hidden=true\nX-Mine=1\n", "", false, "Exec=env\nX-Mine=1" },
        { "# mine\nX-GNOME-Autostart-enabled=false\n", "", false, "# mine\nX-GNOME-Autostart-enabled=true" },
        { "X-MATE-Autostart-enabled=false\n", "", false, "X-MATE-Autostart-enabled=true" },
        { "TryExec=no-such-program\n", "", false, "Exec=env\nTryExec=/usr/bin/env" },
        { "", "X-Theirs=1\n", true, "X-Theirs=1\nHidden=true" },
        { "Hidden=true\n", "X-Theirs=1\n", false, "Exec=env\n" },
        { "", "X-GNOME-Autostart-enabled=false\n", false, "X-GNOME-Autostart-enabled=true" },
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(std::string(test.user) + '|' + test.system);
        const TemporaryDirectory directory;
        write(directory, kUser, test.user);
        write(directory, kSystem, test.system);
        const AutostartEntry entry = entryIn(directory);
        EXPECT_EQ(*entry.isOn(), test.isOn);
        EXPECT_TRUE(entry.setOn(!test.isOn));
        EXPECT_EQ(*entry.isOn(), !test.isOn);
        EXPECT_NE(directory.readFile(kUser).find(test.afterTurning), std::string::npos) << directory.readFile(kUser);
    }
}

TEST(AutostartEntry, RemovesItsOwnEntryAlsoOnceASettingsProgramHasSwitchedIt)
{
    const TemporaryDirectory directory;
    const AutostartEntry entry = entryIn(directory);
    ASSERT_TRUE(entry.setOn(true));
    const std::string own = directory.readFile(kUser);
    directory.writeFile(kUser, own + "Hidden=false\n");
    EXPECT_TRUE(entry.setOn(false));
    EXPECT_FALSE(std::filesystem::exists(directory.path(kUser)));
}

TEST(AutostartEntry, TellsWhatItCouldNotChange)
{
    for (const char* text : { "no entry", "[Desktop Entry]\nType=Application\nName=Q\nExec=env\nOnlyShowIn=KDE;\n" }) {
        const TemporaryDirectory directory;
        directory.writeFile(kUser, text);
        EXPECT_FALSE(entryIn(directory).setOn(true)) << text;
        EXPECT_EQ(directory.readFile(kUser), text);
    }
    const TemporaryDirectory directory;
    directory.writeFile("user", "in the way");
    EXPECT_FALSE(entryIn(directory).setOn(true));
}

} // namespace
