#include "XdgEnvironment.h"

#include "DirectoryNames.h"
#include "LibrarySearchPaths.h"
#include "PathStatus.h"
#include "URL.h"

#include <glib.h>

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace quillbox {

namespace {

    std::vector<std::string> split(const char* list)
    {
        std::vector<std::string> parts;
        std::string_view rest = list ? list : "";
        while (!rest.empty()) {
            const std::size_t colon = rest.find(':');
            if (const std::string_view part = rest.substr(0, colon); !part.empty())
                parts.emplace_back(part);
            rest.remove_prefix(colon == std::string_view::npos ? rest.size() : colon + 1);
        }
        return parts;
    }

    std::string withoutTrailingSlashes(std::string path)
    {
        while (path.size() > 1 && path.back() == '/')
            path.pop_back();
        return path;
    }

    Result<bool> isProgram(const std::string& path)
    {
        const Result<struct stat> status = statusOfPath(path);
        if (status)
            return S_ISREG(status->st_mode) && isAccessible(path, X_OK);
        // A file that may not be looked at may not be run either.
        const int error = status.error().code;
        if (isAbsence(error) || error == EACCES)
            return false;
        return Error::fromErrno(error, "couldn't look for the program", path);
    }

} // namespace

XdgEnvironment XdgEnvironment::ofProcess(const LibrarySearchPaths& searchPaths)
{
    XdgEnvironment environment;
    environment.configHome = withoutTrailingSlashes(g_get_user_config_dir());
    environment.dataHome = withoutTrailingSlashes(g_get_user_data_dir());
    for (const std::string& directory : searchPaths.original("XDG_DATA_DIRS")) {
        // The standard tells programs to ignore relative paths.
        if (directory.front() == '/')
            environment.dataDirectories.push_back(withoutTrailingSlashes(directory));
    }
    environment.desktops = split(std::getenv("XDG_CURRENT_DESKTOP"));
    for (const char* const* language = g_get_language_names(); *language; ++language)
        environment.languages.emplace_back(*language);
    environment.programDirectories = searchPaths.original("PATH");
    if (const char* terminal = std::getenv("TERMINAL"))
        environment.terminal = terminal;
    // If there is none, GLib would return a cache directory, which outlives the session.
    if (const char* directory = std::getenv("XDG_RUNTIME_DIR"); directory && directory[0] == '/')
        environment.runtimeDirectory = withoutTrailingSlashes(directory);
    return environment;
}

std::string XdgEnvironment::fingerprint() const
{
    std::string text = dataHome + '\n' + systemDataDirectory;
    for (const auto* list : { &dataDirectories, &desktops, &languages, &programDirectories }) {
        text += '\n';
        for (const std::string& part : *list)
            text += part + ':';
    }
    return text;
}

std::string XdgEnvironment::findProgram(const std::string& name) const
{
    const Result<std::string> program = lookForProgram(name);
    return program ? *program : std::string();
}

Result<std::string> XdgEnvironment::lookForProgram(const std::string& name) const
{
    if (name.empty() || (name.find('/') != std::string::npos && name.front() != '/'))
        return std::string();
    if (name.front() == '/') {
        const Result<bool> answer = isProgram(name);
        if (!answer)
            return answer.error();
        return *answer ? name : std::string();
    }
    std::optional<Error> problem;
    for (const std::string& directory : programDirectories) {
        std::string path = path::appending(directory, name);
        const Result<bool> answer = isProgram(path);
        if (answer && *answer)
            return path;
        if (!answer && !problem)
            problem = answer.error();
    }
    if (problem)
        return *problem;
    return std::string();
}

} // namespace quillbox
