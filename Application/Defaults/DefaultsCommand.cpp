#include "DefaultsCommand.h"

#include "Debug.h"
#include "FileContents.h"
#include "JSONText.h"
#include "ManageDefaults.h"
#include "MenuExchange.h"
#include "UserDefaults.h"
#include "XMLPropertyList.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <optional>

namespace quillbox {

namespace {

    constexpr int kUsageError = 2;
    constexpr std::size_t kLargestMenu = std::size_t { 64 } << 20;
    const std::string kMenuKey = "UserPickedMenuItems";
    const std::string kMenuVersionKey = "MenuSaveVersion";

    constexpr const char* kHelp = R"(Usage: quillbox-defaults COMMAND

Reads and changes the settings of Quillbox; one that runs goes by them when its
menu opens next.

  list                   every key with its value
  read KEY               the value of a key
  write KEY VALUE        sets a key; the value is a text after --string (or
                         nothing), else --bool true|false, --integer, --real
  delete KEY             removes a key
  export [--json] [FILE] the whole menu, as an XML property list or as JSON, to
                         a file or to standard output; a file named .json gets
                         JSON
  import FILE            replaces the menu by an exported one (- for standard
                         input) and names the entries whose files are missing
  --help, --version

More: man quillbox-defaults
)";

    using Words = std::span<const std::string>;

    int fail(const Error& error)
    {
        std::cerr << "quillbox-defaults: " << error.description() << '\n';
        return EXIT_FAILURE;
    }

    int misuse(const std::string& problem)
    {
        std::cerr << "quillbox-defaults " << problem << ".\nWhat there is: quillbox-defaults --help\n";
        return kUsageError;
    }

    // What was told by the settings themselves counts as a failure too.
    int stored(const std::string& what)
    {
        if (const Result<void> written = UserDefaults::standard().synchronize(); !written)
            return EXIT_FAILURE;
        if (!what.empty())
            std::cout << what << '\n';
        return EXIT_SUCCESS;
    }

    // Simple values as people write them, others as a property list.
    Result<std::string> shown(const PropertyList& value)
    {
        if (const auto* text = value.as<std::string>())
            return *text;
        if (const auto* boolean = value.as<bool>())
            return std::string(*boolean ? "true" : "false");
        if (const auto* date = value.as<Date>())
            return date->description();
        if (const auto number = value.asInt64())
            return std::to_string(*number);
        Result<std::string> text = xmlpropertylist::write(value);
        if (text && text->ends_with('\n'))
            text->pop_back();
        return text;
    }

    int list(Words)
    {
        for (const auto& [key, value] : UserDefaults::standard().dictionaryRepresentation()) {
            const auto* bytes = value.as<Data>();
            const Result<std::string> text = bytes
                ? Result<std::string>("(" + std::to_string(bytes->size()) + " bytes"
                                      + (key == kMenuKey ? ": the menu, see export)" : ")"))
                : shown(value);
            if (!text)
                return fail(text.error());
            std::cout << key << " = " << *text << '\n';
        }
        return UserDefaults::standard().isReadable() ? EXIT_SUCCESS : EXIT_FAILURE;
    }

    int read(Words words)
    {
        if (words.size() != 1)
            return misuse("read takes one key");
        const std::optional<PropertyList> value = UserDefaults::standard().object(words[0]);
        if (!value)
            return UserDefaults::standard().isReadable()
                ? fail({ 0, "there is no \"" + words[0] + "\" in the settings", {} })
                : EXIT_FAILURE;
        const Result<std::string> text = shown(*value);
        if (!text)
            return fail(text.error());
        std::cout << *text << '\n';
        return EXIT_SUCCESS;
    }

    template <class Number>
    std::optional<PropertyList> number(const std::string& text)
    {
        Number value {};
        const char* end = text.data() + text.size();
        const auto [rest, problem] = std::from_chars(text.data(), end, value);
        return problem == std::errc() && rest == end ? std::optional(PropertyList(value)) : std::nullopt;
    }

    std::optional<PropertyList> valueOf(const std::string& type, const std::string& text)
    {
        if (type == "--string")
            return PropertyList(text);
        if (type == "--integer")
            return number<std::int64_t>(text);
        if (type == "--real")
            return number<double>(text);
        if (type == "--bool" && (text == "true" || text == "false"))
            return PropertyList(text == "true");
        return std::nullopt;
    }

    int write(Words words)
    {
        if (words.size() != 2 && words.size() != 3)
            return misuse("write takes a key, a type where it is no text, and a value");
        if (words[0] == kMenuKey || words[0] == kMenuVersionKey)
            return misuse("leaves \"" + words[0] + "\" to import, since it is a part of the menu");
        const std::string type = words.size() == 3 ? words[1] : "--string";
        std::optional<PropertyList> value = valueOf(type, words.back());
        if (!value)
            return misuse("can't take \"" + words.back() + "\" for " + type);
        if (!PropertyList(*value).binaryData())
            return misuse("takes texts in UTF-8 only");
        UserDefaults::standard().set(std::move(*value), words[0]);
        return stored("");
    }

    int remove(Words words)
    {
        if (words.size() != 1)
            return misuse("delete takes one key");
        UserDefaults& defaults = UserDefaults::standard();
        if (!defaults.object(words[0]) && defaults.isReadable())
            return fail({ 0, "there is no \"" + words[0] + "\" in the settings", {} });
        defaults.removeObject(words[0]);
        return stored("");
    }

    int exportMenu(Words words)
    {
        bool isJSON = !words.empty() && words[0] == "--json";
        const Words rest = words.subspan(isJSON ? 1 : 0);
        if (rest.size() > 1 || (!rest.empty() && rest[0].starts_with("--")))
            return misuse("export takes --json and one file");
        isJSON = isJSON || (!rest.empty() && rest[0].ends_with(".json"));
        ManageDefaults::loadAllFromDisk();
        if (!UserDefaults::standard().isReadable())
            return EXIT_FAILURE;
        for (const AttributedString& entry : Debug::errorLog())
            std::cerr << "quillbox-defaults: " << entry.string() << '\n';
        const PropertyList menu = exportedMenu(MainMenuItem::actualMenuItems());
        const Result<std::string> text = isJSON ? jsontext::write(menu) : xmlpropertylist::write(menu);
        if (!text)
            return fail(text.error());
        if (rest.empty() || rest[0] == "-") {
            std::cout << *text << std::flush;
            return std::cout ? EXIT_SUCCESS : EXIT_FAILURE;
        }
        const Result<void> written = replaceFile(rest[0], Data(text->begin(), text->end()), 0644);
        return written ? EXIT_SUCCESS : fail(written.error());
    }

    Result<PropertyList> menuIn(const std::string& name)
    {
        std::string text;
        if (name == "-") {
            text.assign(std::istreambuf_iterator<char>(std::cin), {});
        } else {
            const Result<Data> bytes = readFile(name, kLargestMenu);
            if (!bytes)
                return Error::fromErrno(bytes.error().code, "couldn't read", name);
            text.assign(bytes->begin(), bytes->end());
        }
        const std::size_t first = text.find_first_not_of(" \t\r\n");
        if (first != std::string::npos && (text[first] == '{' || text[first] == '['))
            return jsontext::read(text);
        return PropertyList::fromData(Data(text.begin(), text.end()));
    }

    int importMenu(Words words)
    {
        if (words.size() != 1)
            return misuse("import takes one file");
        const Result<PropertyList> menu = menuIn(words[0]);
        if (!menu)
            return fail(menu.error());
        const Result<ImportedMenu> imported = importedMenu(*menu);
        if (!imported)
            return fail({ 0, imported.error().what, words[0] });
        for (const std::string& path : imported->missingPaths)
            std::cerr << "quillbox-defaults: can't find " << path << " now; its entry works once something is there\n";
        MainMenuItem::actualMenuItems() = imported->items;
        if (!ManageDefaults::saveAppMenusToDisk())
            return EXIT_FAILURE;
        return stored("The menu has " + std::to_string(imported->items.size()) + " entries.");
    }

} // namespace

int DefaultsCommand::run(Words words)
{
    constexpr struct {
        const char* name;
        int (*run)(Words);
    } kCommands[] = { { "list", list },     { "read", read },         { "write", write },
                      { "delete", remove }, { "export", exportMenu }, { "import", importMenu } };
    UserDefaults::standard().setFailureHandler([](const Error& error) { fail(error); });
    if (words.empty())
        return misuse("takes a command");
    if (words[0] == "--help" || words[0] == "-h") {
        std::cout << kHelp;
        return EXIT_SUCCESS;
    }
    if (words[0] == "--version") {
        std::cout << "quillbox-defaults " QUILLBOX_VERSION "\n";
        return EXIT_SUCCESS;
    }
    for (const auto& command : kCommands) {
        if (words[0] == command.name)
            return command.run(words.subspan(1));
    }
    return misuse("has no command \"" + words[0] + "\"");
}

} // namespace quillbox
