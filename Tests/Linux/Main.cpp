#include "TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <string>

// The user's default applications for texts and directories: scripts that tell what they were given.
static void installDefaultApplications(const quillbox::TemporaryDirectory& home)
{
    for (const std::string name : { "viewer", "files" }) {
        const std::string script =
            home.writeFile(name,
                           "#!/bin/sh\nfor word in " + name + " \"$@\"; do printf '%s\\n' \"$word\"; done > \""
                               + home.path("answers") + "\"\n");
        chmod(script.c_str(), 0755);
        std::string entry = "[Desktop Entry]\nType=Application\n";
        entry.append("Name=").append(name).append("\nExec=").append(script);
        entry.append(" %f\nMimeType=text/plain;application/x-desktop;inode/directory;\n");
        home.writeFile("system/applications/" + name + ".desktop", entry);
    }
    home.writeFile("config/mimeapps.list",
                   "[Default Applications]\ntext/plain=viewer.desktop\napplication/x-desktop=viewer.desktop\n"
                   "inode/directory=files.desktop\n");
    home.writeFile("system/applications/mimeinfo.cache", "[MIME Cache]\ntext/plain=files.desktop;viewer.desktop;\n");
    home.makeDirectory("data/applications");
}

// GLib asks the environment once a process, so these tests get a home and data directories of their own before any
// of them runs.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const quillbox::TemporaryDirectory home;
    const auto set = [](const char* name, const std::string& value) { setenv(name, value.c_str(), 1); };
    set("HOME", home.path());
    set("XDG_CONFIG_HOME", home.path("config"));
    set("XDG_DATA_HOME", home.path("data"));
    set("XDG_CACHE_HOME", home.path("cache"));
    // The MIME database of the system is the one thing of it that they need.
    set("XDG_DATA_DIRS", home.path("system") + ":/usr/share");
    set("XDG_CURRENT_DESKTOP", "XFCE");
    set("LC_ALL", "C.UTF-8");
    // No bus: nothing of the machine's session is to be started.
    set("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + home.path("no-bus"));
    // As if this process had been started by a click of its own.
    set("XDG_ACTIVATION_TOKEN", "of this process");
    unsetenv("DISPLAY");
    unsetenv("TERMINAL");
    installDefaultApplications(home);
    return RUN_ALL_TESTS();
}
