#include "DesktopEntry.h"

#include "DirectoryNames.h"
#include "FileContents.h"
#include "GLibPointer.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace quillbox {

namespace {

    constexpr const char* kGroup = G_KEY_FILE_DESKTOP_GROUP;
    // The largest entries on real systems, with all their translations, have about 50,000 bytes.
    constexpr std::size_t kLargestFile = 1 << 20;

    std::string stringValue(GKeyFile* file, const char* key)
    {
        const GLibText value(g_key_file_get_string(file, kGroup, key, nullptr));
        return value ? value.get() : std::string();
    }

    std::string localizedValue(GKeyFile* file, const char* key, const std::vector<std::string>& languages)
    {
        for (const std::string& language : languages) {
            if (language == "C")
                break;
            std::string value = stringValue(file, (key + ('[' + language + ']')).c_str());
            if (!value.empty())
                return value;
        }
        return stringValue(file, key);
    }

    std::vector<std::string> listValue(GKeyFile* file, const char* key)
    {
        std::vector<std::string> values;
        const GLibTexts list(g_key_file_get_string_list(file, kGroup, key, nullptr, nullptr));
        for (char** value = list.get(); value && *value; ++value)
            values.emplace_back(*value);
        return values;
    }

    bool flag(GKeyFile* file, const char* key)
    {
        return g_key_file_get_boolean(file, kGroup, key, nullptr);
    }

    std::string firstWord(const std::string& commandLine)
    {
        char** words = nullptr;
        if (!g_shell_parse_argv(commandLine.c_str(), nullptr, &words, nullptr))
            return {};
        const GLibTexts owned(words);
        return words[0];
    }

    std::string trimmed(const std::string& text)
    {
        const std::size_t first = text.find_first_not_of(" \t\r\n");
        return first == std::string::npos ? std::string()
                                          : text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
    }

    bool contains(const std::vector<std::string>& list, const std::string& value)
    {
        return std::find(list.begin(), list.end(), value) != list.end();
    }

} // namespace

// Whether reading failed because of what the file is, which a later attempt would not change.
static bool isNoEntryFile(int errorNumber)
{
    return isAbsence(errorNumber) || errorNumber == EISDIR || errorNumber == EINVAL || errorNumber == ENXIO
        || errorNumber == EFBIG;
}

Result<std::optional<DesktopEntry>> DesktopEntry::read(const std::string& path,
                                                       const std::vector<std::string>& languages)
{
    using Answer = std::optional<DesktopEntry>;
    const Result<Data> text = readFile(path, kLargestFile);
    if (!text && !isNoEntryFile(text.error().code))
        return text.error();
    const GLibPointer<GKeyFile, g_key_file_unref> owned(g_key_file_new());
    GKeyFile* file = owned.get();
    if (!text
        || !g_key_file_load_from_data(file, reinterpret_cast<const char*>(text->data()), text->size(),
                                      G_KEY_FILE_KEEP_TRANSLATIONS, nullptr)
        || stringValue(file, "Type") != "Application") {
        return Answer();
    }

    DesktopEntry entry;
    entry.name = trimmed(localizedValue(file, "Name", languages));
    entry.program = firstWord(stringValue(file, "Exec"));
    if (entry.name.empty() || (entry.program.empty() && !flag(file, "DBusActivatable")))
        return Answer();
    entry.icon = localizedValue(file, "Icon", languages);
    entry.tryExec = stringValue(file, "TryExec");
    entry.isHidden = flag(file, "Hidden");
    entry.isNoDisplay = flag(file, "NoDisplay");
    entry.hasOnlyShowIn = g_key_file_has_key(file, kGroup, "OnlyShowIn", nullptr);
    entry.onlyShowIn = listValue(file, "OnlyShowIn");
    entry.notShowIn = listValue(file, "NotShowIn");
    entry.categories = listValue(file, "Categories");
    entry.kdeAliasFor = stringValue(file, "X-KDE-AliasFor");
    entry.cinnamonSettingsPanel = stringValue(file, "X-Cinnamon-Settings-Panel");
    return Answer(std::move(entry));
}

bool DesktopEntry::isShownOn(const std::vector<std::string>& desktops) const
{
    for (const std::string& desktop : desktops) {
        if (contains(onlyShowIn, desktop))
            return true;
        if (contains(notShowIn, desktop))
            return false;
    }
    return !hasOnlyShowIn;
}

bool DesktopEntry::hasCategory(const std::string& category) const
{
    return contains(categories, category);
}

} // namespace quillbox
