#include "AutostartEntry.h"

#include "DesktopEntry.h"
#include "FileContents.h"
#include "GLibPointer.h"
#include "URL.h"

#include <cerrno>
#include <optional>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace quillbox {

namespace {

    constexpr const char* kGroup = G_KEY_FILE_DESKTOP_GROUP;
    constexpr std::size_t kLargestFile = 1 << 20;
    constexpr const char* kHidden = "Hidden";
    // What settings programs write for an entry that is switched off without being hidden.
    constexpr const char* kSwitches[] = { "X-GNOME-Autostart-enabled", "X-MATE-Autostart-enabled" };

    // The keys of a desktop entry, with its comments; null where the text is none.
    using KeyFile = GLibPointer<GKeyFile, g_key_file_unref>;
    KeyFile keyFile(const std::string& text)
    {
        KeyFile file(g_key_file_new());
        const auto flags = static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
        const bool isEntry = g_key_file_load_from_data(file.get(), text.data(), text.size(), flags, nullptr)
            && g_key_file_has_group(file.get(), kGroup);
        return isEntry ? std::move(file) : nullptr;
    }

    std::string textOf(const KeyFile& file)
    {
        gsize length = 0;
        const GLibText text(g_key_file_to_data(file.get(), &length, nullptr));
        return { text.get(), length };
    }

    bool isSwitchedOff(const KeyFile& file, const char* key)
    {
        return g_key_file_has_key(file.get(), kGroup, key, nullptr)
            && !g_key_file_get_boolean(file.get(), kGroup, key, nullptr);
    }

    // As the standard for desktop entries has it, which not every desktop goes beyond.
    std::string quotedForExec(const std::string& path)
    {
        std::string quoted;
        for (const char c : path) {
            if (std::string_view("\"`$\\").find(c) != std::string_view::npos)
                quoted += '\\';
            quoted += c;
            if (c == '%')
                quoted += c;
        }
        const bool isPlain = path.find_first_of(" \t\n\"'\\><~|&;$*?#()`") == std::string::npos;
        return isPlain ? quoted : '"' + quoted + '"';
    }

    // None where there is no file.
    Result<std::optional<std::string>> textAt(const std::string& path)
    {
        const Result<Data> bytes = readFile(path, kLargestFile);
        if (bytes)
            return std::optional(std::string(bytes->begin(), bytes->end()));
        if (bytes.error().isNotThere())
            return std::optional<std::string>();
        return Error::fromErrno(bytes.error().code, "couldn't read the autostart entry", path);
    }

} // namespace

AutostartEntry::Places AutostartEntry::Places::ofProcess()
{
    Places places { { g_get_user_config_dir() } };
    for (const char* const* directory = g_get_system_config_dirs(); *directory; ++directory)
        places.configurationDirectories.emplace_back(*directory);
    return places;
}

AutostartEntry::AutostartEntry(XdgEnvironment environment, Places places, std::string identifier, std::string program)
    : environment_(std::move(environment)),
      places_(std::move(places)),
      identifier_(std::move(identifier)),
      program_(std::move(program))
{
}

std::string AutostartEntry::pathIn(const std::string& directory) const
{
    return path::appending(directory, "autostart/" + identifier_ + ".desktop");
}

Result<bool> AutostartEntry::isOn() const
{
    // The first one counts, whatever it says.
    for (const std::string& directory : places_.configurationDirectories) {
        const std::string path = pathIn(directory);
        const Result<std::optional<std::string>> text = textAt(path);
        if (!text)
            return text.error();
        if (*text)
            return isEffective(path, **text);
    }
    return false;
}

Result<bool> AutostartEntry::isEffective(const std::string& path, const std::string& text) const
{
    const Result<std::optional<DesktopEntry>> entry = DesktopEntry::read(path, environment_.languages);
    if (!entry)
        return entry.error();
    const KeyFile file = keyFile(text);
    if (!*entry || !file || (*entry)->isHidden || (*entry)->program.empty()
        || !(*entry)->isShownOn(environment_.desktops))
        return false;
    for (const char* key : kSwitches) {
        if (isSwitchedOff(file, key))
            return false;
    }
    return (*entry)->tryExec.empty() || !environment_.findProgram((*entry)->tryExec).empty();
}

Result<void> AutostartEntry::setOn(bool wanted) const
{
    const Result<bool> now = isOn();
    if (!now)
        return now.error();
    if (*now == wanted)
        return {};
    const std::string own = pathIn(places_.configurationDirectories.front());
    std::optional<std::string> text;
    std::size_t place = 0;
    for (; place < places_.configurationDirectories.size() && !text; ++place) {
        Result<std::optional<std::string>> found = textAt(pathIn(places_.configurationDirectories[place]));
        if (!found)
            return found.error();
        text = std::move(*found);
    }
    if (text && !keyFile(*text))
        return Error { 0, "this autostart entry is damaged, and is left as it is:",
                       pathIn(places_.configurationDirectories[place - 1]) };
    if (!wanted && place == 1 && isOurs(*text)) {
        if (::unlink(own.c_str()) != 0)
            return Error::fromErrno(errno, "couldn't remove the autostart entry", own);
        // Below it there may be one of the system.
        return setOn(false);
    }
    const std::string changedText = text ? changed(*text, wanted) : ownEntry();
    if (const auto written = replaceFile(own, Data(changedText.begin(), changedText.end()), 0644); !written)
        return Error::fromErrno(written.error().code, "couldn't write the autostart entry", own);
    const Result<bool> then = isOn();
    if (then && *then != wanted)
        return Error { 0, "the desktop does not start Quillbox for what else this autostart entry says:", own };
    return then ? Result<void>() : then.error();
}

// Without its path where that is what the desktop finds too: a later version may lie elsewhere.
std::string AutostartEntry::command() const
{
    const std::string name(path::lastPathComponent(program_));
    return environment_.findProgram(name) == program_ ? name : quotedForExec(program_);
}

std::string AutostartEntry::ownEntry() const
{
    const KeyFile file(g_key_file_new());
    const auto set = [&](const char* key, const std::string& value) {
        g_key_file_set_string(file.get(), kGroup, key, value.c_str());
    };
    set("Type", "Application");
    set("Name", "Quillbox");
    set("Comment", "Browse and open your files from a menu in the status bar");
    set("Icon", identifier_);
    set("Exec", command());
    set("TryExec", program_);
    set("Terminal", "false");
    set(kSwitches[0], "true");
    set("X-LXQt-Need-Tray", "true");
    return textOf(file);
}

std::string AutostartEntry::changed(const std::string& text, bool wanted) const
{
    const KeyFile file = keyFile(text);
    if (!wanted) {
        g_key_file_set_boolean(file.get(), kGroup, kHidden, TRUE);
        return textOf(file);
    }
    g_key_file_remove_key(file.get(), kGroup, kHidden, nullptr);
    for (const char* key : kSwitches) {
        if (isSwitchedOff(file, key))
            g_key_file_set_boolean(file.get(), kGroup, key, TRUE);
    }
    // An entry for a program that has gone since.
    const GLibText program(g_key_file_get_string(file.get(), kGroup, "TryExec", nullptr));
    if (program && environment_.findProgram(program.get()).empty()) {
        g_key_file_set_string(file.get(), kGroup, "TryExec", program_.c_str());
        g_key_file_set_string(file.get(), kGroup, "Exec", command().c_str());
    }
    return textOf(file);
}

bool AutostartEntry::isOurs(const std::string& text) const
{
    const KeyFile file = keyFile(text);
    const KeyFile own = keyFile(ownEntry());
    g_key_file_remove_key(file.get(), kGroup, kHidden, nullptr);
    for (const char* key : { "Exec", "TryExec" }) {
        const GLibText value(g_key_file_get_string(own.get(), kGroup, key, nullptr));
        g_key_file_set_string(file.get(), kGroup, key, value.get());
    }
    return textOf(file) == textOf(own);
}

} // namespace quillbox
