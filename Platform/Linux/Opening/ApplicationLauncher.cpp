#include "ApplicationLauncher.h"

#include "ExecQuoting.h"
#include "FileHandler.h"
#include "GLibPointer.h"
#include "GLibSessionBus.h"
#include "LaunchContext.h"
#include "LibrarySearchPaths.h"
#include "PathStatus.h"
#include "TerminalProgram.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <memory>
#include <utility>

namespace quillbox {

namespace {

    using AppInfo = GLibObject<GDesktopAppInfo>;

    constexpr const char* kGroup = G_KEY_FILE_DESKTOP_GROUP;

    Error errorFrom(const GLibError& error, std::string path)
    {
        return Error { 0, error ? error->message : "couldn't be opened", std::move(path) };
    }

    // Fails if the program or its directory does not answer: the child would wait for it, and this process for the
    // child.
    Result<void> answersInTime(const AppInfo& info)
    {
        const GLibText directory(g_desktop_app_info_get_string(info.get(), G_KEY_FILE_DESKTOP_KEY_PATH));
        const char* program = g_app_info_get_executable(G_APP_INFO(info.get()));
        for (const char* path : { program, static_cast<const char*>(directory.get()) }) {
            if (!path || *path != '/')
                continue;
            if (const Result<struct stat> status = statusOfPath(path); !status && status.error().code == ETIMEDOUT)
                return status.error();
        }
        return {};
    }

    // This runs in the child between fork and exec, where only system calls are safe.
    void prepareChild(gpointer homeDirectory)
    {
        setsid();
        // This process ignores the signal, and a program would inherit that.
        std::signal(SIGPIPE, SIG_DFL);
        // The directory of this process may be on a volume that is to be unmounted.
        if (homeDirectory && chdir(static_cast<const char*>(homeDirectory)) != 0)
            return;
    }

    // Returns the entry changed so that it runs in a terminal. GIO can do it too, but only with a fixed list of
    // terminal programs.
    Result<AppInfo> inTerminal(const AppInfo& info, const XdgEnvironment& environment)
    {
        const char* path = g_desktop_app_info_get_filename(info.get());
        const auto prefix = terminalCommandPrefix(environment);
        if (!prefix)
            return Error { 0, "no terminal program is installed to run it in", path ? path : "" };
        const GLibPointer<GKeyFile, g_key_file_unref> file(g_key_file_new());
        GError* problem = nullptr;
        if (!g_key_file_load_from_file(file.get(), path, G_KEY_FILE_KEEP_TRANSLATIONS, &problem))
            return errorFrom(GLibError(problem), path);
        const GLibText command(g_key_file_get_string(file.get(), kGroup, "Exec", nullptr));
        g_key_file_set_string(file.get(), kGroup, "Exec", (*prefix + (command ? command.get() : "")).c_str());
        g_key_file_set_boolean(file.get(), kGroup, "Terminal", FALSE);
        g_key_file_set_boolean(file.get(), kGroup, "DBusActivatable", FALSE);
        AppInfo changed(g_desktop_app_info_new_from_keyfile(file.get()));
        if (!changed)
            return Error { 0, "its command can't be run in a terminal", path };
        return changed;
    }

} // namespace

struct ApplicationLauncher::Launches : std::enable_shared_from_this<Launches> {
    XdgEnvironment environment;
    std::function<void(const Error&)> onLateError;
    std::string activationToken;
    bool isTokenTaken = false;
    LibrarySearchPaths* searchPaths = nullptr;

    void prepare() const
    {
        if (searchPaths)
            searchPaths->bringUpToDate();
    }
    // `file` is what the application is to open; empty if it is only started.
    Result<void> launch(AppInfo info, const std::string& file);

private:
    struct Activation {
        std::shared_ptr<Launches> launches;
        std::string path;
    };

    void activate(const AppInfo& info, GList* uris, GAppLaunchContext* context, const std::string& file);
    static Result<void> spawn(const AppInfo& info, GList* uris, GAppLaunchContext* context, const std::string& file);
    static void activated(GObject* info, GAsyncResult* result, gpointer activation);
};

ApplicationLauncher::ApplicationLauncher(XdgEnvironment environment, std::function<void(const Error&)> onLateError)
    : launches_(std::make_shared<Launches>())
{
    launches_->environment = std::move(environment);
    launches_->onLateError = std::move(onLateError);
}

ApplicationLauncher::~ApplicationLauncher()
{
    launches_->onLateError = nullptr;
}

void ApplicationLauncher::setActivationToken(std::string token)
{
    launches_->activationToken = std::move(token);
    launches_->isTokenTaken = false;
}

bool ApplicationLauncher::isActivationTokenTaken() const
{
    return launches_->isTokenTaken;
}

void ApplicationLauncher::setSearchPaths(LibrarySearchPaths* paths)
{
    launches_->searchPaths = paths;
}

Result<void> ApplicationLauncher::startEntry(const std::string& entryPath)
{
    return openFile({}, entryPath);
}

Result<void> ApplicationLauncher::openFile(const std::string& path, const std::string& entryPath)
{
    launches_->prepare();
    if (Result<void> answers = answersInTime(entryPath); !answers)
        return answers;
    AppInfo info(g_desktop_app_info_new_from_filename(entryPath.c_str()));
    if (!info) {
        return Error { 0, access(entryPath.c_str(), F_OK) == 0 ? "the program it starts isn't installed" : "it is gone",
                       entryPath };
    }
    return launches_->launch(std::move(info), path);
}

Result<void> ApplicationLauncher::startProgram(const std::string& path)
{
    launches_->prepare();
    if (launches_->environment.findProgram(path).empty())
        return Error { 0, "it has no program that can be run", path };
    const GLibPointer<GKeyFile, g_key_file_unref> file(g_key_file_new());
    g_key_file_set_string(file.get(), kGroup, "Type", "Application");
    g_key_file_set_string(file.get(), kGroup, "Name", "Program");
    g_key_file_set_string(file.get(), kGroup, "Exec", programForExec(path).c_str());
    AppInfo info(g_desktop_app_info_new_from_keyfile(file.get()));
    if (!info)
        return Error { 0, "it can't be started", path };
    return launches_->launch(std::move(info), {});
}

Result<void> ApplicationLauncher::openFile(const std::string& path)
{
    launches_->prepare();
    Result<GLibObject<GAppInfo>> info = defaultHandler(path, launches_->environment);
    if (!info)
        return info.error();
    return launches_->launch(AppInfo(G_DESKTOP_APP_INFO(info->release())), path);
}

Result<std::vector<std::string>> ApplicationLauncher::entriesFor(const std::string& path) const
{
    launches_->prepare();
    return handlerEntries(path, launches_->environment);
}

std::string ApplicationLauncher::takeActivationToken()
{
    // The program that gets it tells the desktop when it is ready.
    launches_->isTokenTaken = !launches_->activationToken.empty();
    return std::exchange(launches_->activationToken, {});
}

Result<void> ApplicationLauncher::Launches::launch(AppInfo info, const std::string& file)
{
    if (Result<void> answers = answersInTime(info); !answers)
        return answers;
    const GLibObject<GAppLaunchContext> context = makeLaunchContext(std::exchange(activationToken, {}), isTokenTaken);
    for (const auto& [name, value] : searchPaths ? searchPaths->forStartedPrograms() : LibrarySearchPaths::Variables())
        g_app_launch_context_setenv(context.get(), name.c_str(), value.c_str());
    if (g_desktop_app_info_get_boolean(info.get(), "Terminal")) {
        Result<AppInfo> changed = inTerminal(info, environment);
        if (!changed)
            return changed.error();
        info = std::move(*changed);
    }
    GError* problem = nullptr;
    const GLibText uri(file.empty() ? nullptr : g_filename_to_uri(file.c_str(), nullptr, &problem));
    if (problem)
        return errorFrom(GLibError(problem), file);
    const GLibPointer<GList, g_list_free> uris(uri ? g_list_append(nullptr, uri.get()) : nullptr);
    // The answer to an activation arrives in GLib's main loop. Without a running one nobody would be told of a failure,
    // and the program would not be started if there is no bus.
    const bool hasMainLoop = g_main_depth() > 0;
    if (!hasMainLoop || !g_desktop_app_info_get_boolean(info.get(), "DBusActivatable"))
        return spawn(info, uris.get(), context.get(), file);
    activate(info, uris.get(), context.get(), file);
    return {};
}

Result<void> ApplicationLauncher::Launches::spawn(const AppInfo& info, GList* uris, GAppLaunchContext* context,
                                                  const std::string& file)
{
    const GLibText directory(g_desktop_app_info_get_string(info.get(), G_KEY_FILE_DESKTOP_KEY_PATH));
    const bool hasDirectory = directory && *directory.get();
    const auto flags =
        static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);
    // The child changes to this directory before it executes the program, and this process waits for that.
    const char* home = statusOfPath(g_get_home_dir()) ? g_get_home_dir() : "/";
    GError* problem = nullptr;
    if (!g_desktop_app_info_launch_uris_as_manager(info.get(), uris, context, flags, prepareChild,
                                                   hasDirectory ? nullptr : const_cast<char*>(home), nullptr, nullptr,
                                                   &problem)) {
        return errorFrom(GLibError(problem), file);
    }
    return {};
}

void ApplicationLauncher::Launches::activate(const AppInfo& info, GList* uris, GAppLaunchContext* context,
                                             const std::string& file)
{
    const char* entry = g_desktop_app_info_get_filename(info.get());
    auto activation = std::make_unique<Activation>();
    *activation = { shared_from_this(), file.empty() && entry ? entry : file };
    useSessionBusOfGLib();
    g_app_info_launch_uris_async(G_APP_INFO(info.get()), uris, context, nullptr, activated, activation.release());
}

void ApplicationLauncher::Launches::activated(GObject* info, GAsyncResult* result, gpointer data)
{
    const std::unique_ptr<Activation> activation(static_cast<Activation*>(data));
    GError* problem = nullptr;
    if (g_app_info_launch_uris_finish(G_APP_INFO(info), result, &problem))
        return;
    const GLibError error(problem);
    if (activation->launches->onLateError)
        activation->launches->onLateError(errorFrom(error, activation->path));
}

} // namespace quillbox
