#include "ApplicationLauncher.h"

#include "ExecQuoting.h"
#include "GLibPointer.h"
#include "GLibSessionBus.h"
#include "LaunchContext.h"
#include "TerminalProgram.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>
#include <unistd.h>

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

    // This runs in the child between fork and exec, where only system calls are safe.
    void prepareChild(gpointer homeDirectory)
    {
        setsid();
        // This process ignores it, which a program would inherit.
        std::signal(SIGPIPE, SIG_DFL);
        // The directory of this process may be on a volume that is to be unmounted.
        if (homeDirectory && chdir(static_cast<const char*>(homeDirectory)) != 0)
            return;
    }

    // Gives the entry changed so that it runs in a terminal. GIO could do it, but its list of terminal programs is
    // fixed.
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

    // `file` is what the application is to open; empty for nothing.
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

Result<void> ApplicationLauncher::startEntry(const std::string& entryPath)
{
    AppInfo info(g_desktop_app_info_new_from_filename(entryPath.c_str()));
    if (!info) {
        return Error { 0, access(entryPath.c_str(), F_OK) == 0 ? "the program it starts isn't installed" : "it is gone",
                       entryPath };
    }
    return launches_->launch(std::move(info), {});
}

Result<void> ApplicationLauncher::startProgram(const std::string& path)
{
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
    // GIO's default file system starts daemons first, and the local one needs none.
    const GLibObject<GFile> file(g_vfs_get_file_for_path(g_vfs_get_local(), path.c_str()));
    GError* problem = nullptr;
    GAppInfo* info = g_file_query_default_handler(file.get(), nullptr, &problem);
    if (!info)
        return errorFrom(GLibError(problem), path);
    return launches_->launch(AppInfo(G_DESKTOP_APP_INFO(info)), path);
}

Result<void> ApplicationLauncher::Launches::launch(AppInfo info, const std::string& file)
{
    const GLibObject<GAppLaunchContext> context = makeLaunchContext(std::exchange(activationToken, {}), isTokenTaken);
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
    // The answer to an activation comes to GLib's main loop; without one nobody would be told, nor the program be
    // started where there is no bus.
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
    GError* problem = nullptr;
    if (!g_desktop_app_info_launch_uris_as_manager(info.get(), uris, context, flags, prepareChild,
                                                   hasDirectory ? nullptr : const_cast<char*>(g_get_home_dir()),
                                                   nullptr, nullptr, &problem)) {
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
