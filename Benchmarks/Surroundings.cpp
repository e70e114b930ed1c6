#include "Surroundings.h"

#include "ManageDefaults.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace quillbox {

namespace {

    XdgEnvironment environmentIn(const std::string& root)
    {
        std::filesystem::create_directories(root + "/data/applications");
        for (int number = 0; number < Surroundings::kApplications; ++number) {
            std::ofstream(root + "/data/applications/org.example.App" + std::to_string(number) + ".desktop")
                << "[Desktop Entry]\nType=Application\nName=Application " << number
                << "\nExec=true\nIcon=application-x-executable\nCategories=Utility;\n";
        }
        XdgEnvironment result;
        result.dataHome = root + "/home";
        result.dataDirectories = { root + "/data" };
        result.systemDataDirectory = root + "/data";
        result.desktops = { "XFCE" };
        result.programDirectories = { "/usr/bin", "/bin" };
        return result;
    }

} // namespace

Surroundings::Surroundings(const std::string& root)
    : bundles_(environmentIn(root),
               [](const Error& error) { std::fprintf(stderr, "%s\n", error.description().c_str()); }),
      directories_(bundles_),
      workspace_(bundles_, [](const std::string&, const std::string&) {}),
      defaults_(root + "/defaults.plist")
{
    ManageDefaults::loadAllFromDisk();
    controller = StatusMenuItemController::create();
}

Surroundings::~Surroundings() = default;

} // namespace quillbox
