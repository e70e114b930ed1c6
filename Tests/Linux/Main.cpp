#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

// The user's default applications for texts and directories: scripts that tell what they were given.
static void installDefaultApplications(const std::string& home)
{
    for (const char* name : { "viewer", "files" }) {
        const std::filesystem::path script = std::filesystem::path(home) / name;
        std::ofstream(script) << "#!/bin/sh\nfor word in " << name << " \"$@\"; do printf '%s\\n' \"$word\"; done > \""
                              << home << "/answers\"\n";
        chmod(script.c_str(), 0755);
        std::ofstream(std::filesystem::path(home) / "system/applications" / (std::string(name) + ".desktop"))
            << "[Desktop Entry]\nType=Application\nName=" << name << "\nExec=" << script.native()
            << " %f\nMimeType=text/plain;application/x-desktop;inode/directory;\n";
    }
    std::ofstream(home + "/config/mimeapps.list")
        << "[Default Applications]\ntext/plain=viewer.desktop\napplication/x-desktop=viewer.desktop\n"
           "inode/directory=files.desktop\n";
}

// GLib asks the environment once a process, so these tests get a home and data directories of their own before any
// of them runs. They lie in $QUILLBOX_TEST_HOME while the process runs.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    std::string home = std::filesystem::temp_directory_path() / "quillbox-linux-tests-XXXXXX";
    if (!mkdtemp(home.data()))
        return EXIT_FAILURE;
    const auto set = [](const char* name, const std::string& value) { setenv(name, value.c_str(), 1); };
    set("QUILLBOX_TEST_HOME", home);
    set("HOME", home);
    set("XDG_CONFIG_HOME", home + "/config");
    set("XDG_DATA_HOME", home + "/data");
    set("XDG_CACHE_HOME", home + "/cache");
    // The MIME database of the system is the one thing of it that they need.
    set("XDG_DATA_DIRS", home + "/system:/usr/share");
    set("XDG_CURRENT_DESKTOP", "XFCE");
    set("LC_ALL", "C.UTF-8");
    // No bus: nothing of the machine's session is to be started.
    set("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + home + "/no-bus");
    // As if this process had been started by a click of its own.
    set("XDG_ACTIVATION_TOKEN", "of this process");
    unsetenv("DISPLAY");
    unsetenv("TERMINAL");
    for (const char* directory : { "/config", "/data/applications", "/system/applications" })
        std::filesystem::create_directories(home + directory);
    installDefaultApplications(home);
    const int result = RUN_ALL_TESTS();
    std::filesystem::remove_all(home);
    return result;
}
