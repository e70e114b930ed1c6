#pragma once

#include "ApplicationBundles.h"
#include "HeadlessDesktop.h"
#include "Installed.h"
#include "LinuxStandardDirectories.h"
#include "LinuxWorkspace.h"
#include "StatusMenuItemController.h"
#include "UserDefaults.h"

#include <memory>
#include <string>

namespace quillbox {

// Everything that the application's code needs around it: the real layer for the desktop over our own data directory,
// `root`, with kApplications installed in it. It is installed for as long as this object lives.
class Surroundings {
public:
    static constexpr int kApplications = 200;

    explicit Surroundings(const std::string& root);
    ~Surroundings();
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

private:
    HeadlessDesktop desktop_;
    ApplicationBundles bundles_;
    LinuxStandardDirectories directories_;
    LinuxWorkspace workspace_;
    UserDefaults defaults_;
    const Installed<StandardDirectories> installedDirectories_ { directories_ };
    const Installed<NSWorkspace> installedWorkspace_ { workspace_ };
    const Installed<UserDefaults> installedDefaults_ { defaults_ };

public:
    std::shared_ptr<StatusMenuItemController> controller;
};

} // namespace quillbox
