#include "XdgTree.h"

#include "Bundle.h"

#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <filesystem>

namespace quillbox {

namespace fs = std::filesystem;

XdgTree::XdgTree()
{
    environment.dataHome = path("user");
    environment.systemDataDirectory = path("system");
    environment.dataDirectories = { path("flatpak"), path("local"), path("system") };
    environment.programDirectories = { path("bin") };
    for (const char* directory : { "user", "local", "system", "flatpak", "bin" })
        root_.makeDirectory(directory);
}

std::string XdgTree::writeEntry(std::string_view dataDirectory, std::string_view name, std::string_view text) const
{
    return root_.writeFile(std::string(dataDirectory) + "/applications/" + std::string(name), text);
}

std::string XdgTree::writeApplication(std::string_view dataDirectory, std::string_view name, std::string_view title,
                                      std::string_view more) const
{
    std::string text = "[Desktop Entry]\nType=Application\nExec=program --option %U\nName=";
    return writeEntry(dataDirectory, name, text.append(title).append("\n").append(more).append("\n"));
}

void XdgTree::removeEntry(std::string_view dataDirectory, std::string_view name) const
{
    fs::remove(path(dataDirectory) + "/applications/" + std::string(name));
}

std::string XdgTree::writeProgram(std::string_view name, std::string_view script) const
{
    std::string file = root_.writeFile("bin/" + std::string(name), "#!/bin/sh\n" + std::string(script));
    chmod(file.c_str(), 0755);
    return file;
}

void XdgTree::settle() const
{
    const auto past = fs::file_time_type::clock::now() - std::chrono::hours(1);
    for (const auto& entry : fs::recursive_directory_iterator(path())) {
        if (entry.exists())
            fs::last_write_time(entry.path(), past);
    }
}

ApplicationBundles& XdgTree::keeper()
{
    if (!keeper_)
        keeper_.emplace(environment, [this](const Error& error) { errors.push_back(error); });
    return *keeper_;
}

std::vector<std::string> XdgTree::bundles() const
{
    std::vector<std::string> names;
    // A domain's directory, a kind's, then what lies in it.
    for (fs::recursive_directory_iterator entry(environment.bundlesDirectory()), end; entry != end; ++entry) {
        if (entry.depth() == 2)
            names.push_back(fs::relative(entry->path(), environment.bundlesDirectory()).string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string XdgTree::info(std::string_view bundle, std::string_view key) const
{
    const auto found = Bundle::atPath(bundlePath(bundle));
    return found ? found->infoString(std::string(key)).value_or("(none)") : "(no bundle)";
}

std::string XdgTree::bundlePath(std::string_view bundle) const
{
    return environment.bundlesDirectory() + '/' + std::string(bundle);
}

} // namespace quillbox
