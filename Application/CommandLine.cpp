#include "CommandLine.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string_view>

namespace quillbox {

namespace {

    constexpr int kUsageError = 2;

    constexpr const char* kHelp = R"(Usage: quillbox [OPTION]

Puts one menu into the status bar, through which files are browsed and opened.
Where a Quillbox runs in the session, that one is told instead: without an
option it opens its preferences.

  --menu       open the menu at its icon, ready for the keyboard; for a key of
               the desktop's keyboard settings
  --autostart on|off
               start Quillbox at login, or not any more
  --help       show this text
  --version    show the version

The toolkit's options, such as -platform and -style, are taken too.
More: man quillbox
)";

    // Options of the toolkit and whether a value follows them. Session managers start programs again with one of them.
    struct ToolkitOption {
        std::string_view name;
        bool hasValue;
    };
    constexpr ToolkitOption kToolkitOptions[] = {
        { "session", true },         { "platform", true },     { "platformpluginpath", true },
        { "platformtheme", true },   { "plugin", true },       { "style", true },
        { "stylesheet", true },      { "display", true },      { "name", true },
        { "title", true },           { "icon", true },         { "geometry", true },
        { "qwindowgeometry", true }, { "qwindowicon", true },  { "qwindowtitle", true },
        { "reverse", false },        { "nograb", false },      { "dograb", false },
        { "sync", false },           { "widgetcount", false },
    };

    const ToolkitOption* toolkitOption(std::string_view argument)
    {
        argument.remove_prefix(argument.starts_with("--") ? 2 : 1);
        const std::string_view name = argument.substr(0, argument.find('='));
        const auto* const found = std::find_if(std::begin(kToolkitOptions), std::end(kToolkitOptions),
                                               [&](const ToolkitOption& option) { return option.name == name; });
        return found == std::end(kToolkitOptions) ? nullptr : found;
    }

} // namespace

CommandLine CommandLine::read(int argc, const char* const* argv)
{
    CommandLine line;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--menu") {
            line.request = Request::openMenu;
        } else if (argument == "--autostart") {
            const std::string_view value = i + 1 < argc ? argv[++i] : "";
            line.request = value == "on" ? Request::startAtLogin : Request::dontStartAtLogin;
            if (value != "on" && value != "off") {
                line.problem = "takes \"--autostart on\" or \"--autostart off\"";
                break;
            }
        } else if (argument == "--help" || argument == "-h") {
            line.request = Request::help;
            break;
        } else if (argument == "--version") {
            line.request = Request::version;
            break;
        } else if (!argument.starts_with('-')) {
            line.problem = "takes no \"" + std::string(argument) + "\"; files are added in the preferences";
            break;
        } else if (const ToolkitOption* option = toolkitOption(argument)) {
            i += option->hasValue && argument.find('=') == std::string_view::npos ? 1 : 0;
        } else {
            line.problem = "has no option \"" + std::string(argument) + "\"";
            break;
        }
    }
    return line;
}

std::optional<int> CommandLine::answer() const
{
    if (!problem.empty()) {
        std::fprintf(stderr, "quillbox %s.\nWhat there is: quillbox --help\n", problem.c_str());
        return kUsageError;
    }
    if (request == Request::help)
        std::fputs(kHelp, stdout);
    else if (request == Request::version)
        std::puts("quillbox " QUILLBOX_VERSION);
    else
        return std::nullopt;
    return std::fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace quillbox
