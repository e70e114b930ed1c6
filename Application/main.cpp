#include "AppDelegate.h"
#include "ApplicationBundles.h"
#include "AutostartEntry.h"
#include "Bundle.h"
#include "CanonicalPath.h"
#include "CommandLine.h"
#include "Debug.h"
#include "FileManager.h"
#include "Installed.h"
#include "LibrarySearchPaths.h"
#include "LinuxPlaces.h"
#include "LinuxStandardDirectories.h"
#include "LinuxVolumeNames.h"
#include "LinuxWorkspace.h"
#include "MenuKey.h"
#include "MountInquiry.h"
#include "NSAlert.h"
#include "NSApplication.h"
#include "NSWindow.h"
#include "QtApplication.h"
#include "QtClock.h"
#include "QtDesktop.h"
#include "RecentUseIndex.h"
#include "ShortMenu.h"
#include "SingleInstance.h"
#include "StatusMenuItemController.h"
#include "ViewDump.h"

#include <QTimer>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

// Puts the parts together: it makes and installs the desktop's side and the display, runs the application on them, and
// releases everything in the reverse order.

namespace quillbox {

namespace {

    void showMessage(const std::string& message, const std::string& detail)
    {
        NSAlert alert;
        alert.setMessageText(message);
        alert.setInformativeText(detail);
        alert.runModal();
    }

    void logBundleError(const Error& error)
    {
        Debug::addErrorLogEntry("ApplicationBundles", "bringUpToDate()", __FILE__, __LINE__, false,
                                error.description());
    }

    void logSilentMount(const Error& error)
    {
        Debug::addErrorLogEntry("MountInquiry", "ask(question:)", __FILE__, __LINE__, false, error.description());
    }

    void logRecentUseError(const Error& error)
    {
        Debug::addErrorLogEntry("RecentUseIndex", "noteOpened(path:)", __FILE__, __LINE__, false, error.description());
    }

    void openPreferences()
    {
        if (const auto& controller = AppDelegate::statusMenuItemController())
            controller->openAppPreferencesWindow(nullptr);
    }

    void quit()
    {
        NSApplication::shared().terminate(nullptr);
    }

    // These two are for developers, and for tests of the whole program.
    void printOpenMenus(QtDesktop& desktop)
    {
        std::printf("%s(no more open menus)\n", desktop.menuPresenter().describeOpenLevels().c_str());
        std::fflush(stdout);
    }

    void printWindows(QtDesktop& desktop)
    {
        for (const auto& window : NSWindow::windows()) {
            window->layoutIfNeeded();
            const std::string views =
                viewDumpOnScreen(*window->contentView(), desktop.windows().contentOrigin(*window));
            std::printf("window \"%s\"\n%s", window->title().c_str(), views.c_str());
        }
        std::puts("(no more windows)");
        std::fflush(stdout);
    }

    AutostartEntry autostartEntry(const LibrarySearchPaths& searchPaths)
    {
        const Result<std::string> program =
            canonicalPath(Bundle::pathForAuxiliaryExecutable("quillbox").value_or("quillbox"));
        return { XdgEnvironment::ofProcess(searchPaths), AutostartEntry::Places::ofProcess(),
                 Bundle::main().bundleIdentifier().value_or("org.quillbox.Quillbox"), program ? *program : "quillbox" };
    }

    // The switch of the short menu. The entry must live as long as it.
    LoginItem loginItem(const AutostartEntry& entry)
    {
        return { [&entry] { return entry.isOn(); }, [&entry](bool isOn) { return entry.setOn(isOn); } };
    }

    int setStartAtLogin(bool isOn)
    {
        const LibrarySearchPaths searchPaths;
        const Result<void> done = autostartEntry(searchPaths).setOn(isOn);
        if (!done)
            std::fprintf(stderr, "quillbox: %s\n", done.error().description().c_str());
        return done ? EXIT_SUCCESS : EXIT_FAILURE;
    }

    // Desktops show a window under the name in the program's desktop entry, and under the bare identifier where no such
    // entry is installed, as when the program runs where it was built.
    void nameWindows(const XdgEnvironment& environment)
    {
        const std::string identifier = Bundle::main().bundleIdentifier().value_or("org.quillbox.Quillbox");
        std::vector<std::string> directories = environment.dataDirectories;
        directories.push_back(environment.dataHome);
        const bool isInstalled = std::any_of(directories.begin(), directories.end(), [&](const std::string& directory) {
            return FileManager::defaultManager().fileExists(directory + "/applications/" + identifier + ".desktop");
        });
        QApplication::setDesktopFileName(isInstalled ? QString::fromStdString(identifier)
                                                     : QApplication::applicationName());
    }

    // The bus's name for what a key does that opens the menu.
    constexpr const char* kOpenMenu = "open-menu";

    int runApplication(QApplication& qt, SingleInstance& instance, LibrarySearchPaths& searchPaths,
                       CommandLine::Request request)
    {
        MountInquiry mounts(Bundle::pathForAuxiliaryExecutable("quillbox-mount-helper").value_or(""), logSilentMount);
        QtDesktop desktop(qt);
        NSApplication& application = NSApplication::shared();
        const Installed<Desktop> installedDesktop(desktop);

        const XdgEnvironment environment = XdgEnvironment::ofProcess(searchPaths);
        nameWindows(environment);
        ApplicationBundles bundles(environment, logBundleError);
        LinuxStandardDirectories directories(bundles);
        const Installed<StandardDirectories> installedDirectories(directories);
        LinuxVolumeNames volumeNames;
        const Installed<VolumeNames> installedVolumeNames(volumeNames);
        LinuxPlaces places(environment);
        const Installed<Places> installedPlaces(places);
        LinuxWorkspace workspace(bundles, showMessage);
        workspace.setSearchPaths(&searchPaths);
        const Installed<NSWorkspace> installedWorkspace(workspace);
        RecentUseIndex recentUse(bundles, logRecentUseError);
        const Installed<MetadataIndex> installedRecentUse(recentUse);
        workspace.onOpened = [&recentUse](const std::string& path) { recentUse.noteOpened(path); };

        const auto takeToken = [&workspace](const std::string& token) {
            workspace.setActivationToken(token);
            QtDesktop::setActivationToken(token);
        };
        const AutostartEntry autostart = autostartEntry(searchPaths);
        const auto shortMenu = std::make_shared<ShortMenu>([&desktop] { desktop.openMenu(); }, loginItem(autostart));
        desktop.setShortMenu(ShortMenu::menu(shortMenu));
        desktop.setActivationTokenHandlers(takeToken, [&workspace] { return workspace.isActivationTokenTaken(); });
        const auto startAgain = [&desktop] {
            desktop.startedAgain();
            openPreferences();
        };
        const auto openMenu = [&desktop] { desktop.openMenuByKeyboard(); };
        instance.setHandlers({ startAgain,
                               { { kOpenMenu, openMenu },
                                 { "preferences", openPreferences },
                                 { "quit", quit },
                                 { "print-open-menus", [&desktop] { printOpenMenus(desktop); } },
                                 { "print-windows", [&desktop] { printWindows(desktop); } } },
                               takeToken });

        const MenuKey key(kOpenMenu, environment.dataHome + "/quillbox/no-menu-key", [&](const std::string& token) {
            takeToken(token);
            openMenu();
        });

        application.setDelegate(std::make_shared<AppDelegate>());
        if (request == CommandLine::Request::openMenu)
            QTimer::singleShot(0, &qt, openMenu); // The icon is put up when the event loop begins.
        const int exitCode = application.run();

        NSWindow::closeAll();
        instance.setHandlers({});
        application.setDelegate(nullptr);
        AppDelegate::releaseStatusMenuItemController();
        return exitCode;
    }

} // namespace

} // namespace quillbox

int main(int argc, char** argv)
{
    using namespace quillbox;
    const CommandLine commandLine = CommandLine::read(argc, argv);
    if (const std::optional<int> exitCode = commandLine.answer())
        return *exitCode;
    using Request = CommandLine::Request;
    if (commandLine.request == Request::startAtLogin || commandLine.request == Request::dontStartAtLogin)
        return setStartAtLogin(commandLine.request == Request::startAtLogin);
    // Where nobody reads our standard output any more, writing to it fails, and the program goes on.
    std::signal(SIGPIPE, SIG_IGN);
    LibrarySearchPaths searchPaths;
    auto startEnvironment = SingleInstance::StartEnvironment::take();
    QtApplication qt(argc, argv);
    QApplication::setApplicationName("Quillbox");

    SingleInstance instance(std::move(startEnvironment));
    switch (instance.claim(commandLine.request == Request::openMenu ? kOpenMenu : "")) {
    case SingleInstance::Outcome::first:
    case SingleInstance::Outcome::unguarded:
        break;
    case SingleInstance::Outcome::handedOver:
        return EXIT_SUCCESS;
    case SingleInstance::Outcome::notAnswered:
        std::fputs("Quillbox is running already, but it does not answer.\n", stderr);
        return EXIT_FAILURE;
    }

    QtClock clock;
    const Installed<Clock> installedClock(clock);
    return runApplication(qt, instance, searchPaths, commandLine.request);
}
