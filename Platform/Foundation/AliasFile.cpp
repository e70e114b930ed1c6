#include "AliasFile.h"

#include "FileContents.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>

namespace quillbox {

namespace {

    constexpr std::size_t kMaximumSize = std::size_t { 64 } << 10;

    std::string_view trimmed(std::string_view text)
    {
        constexpr std::string_view kBlanks = " \t\r";
        const std::size_t first = text.find_first_not_of(kBlanks);
        if (first == std::string_view::npos)
            return {};
        return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
    }

    std::string unescapedValue(std::string_view value)
    {
        std::string text;
        for (std::size_t i = 0; i < value.size(); ++i) {
            if (value[i] != '\\' || i + 1 == value.size()) {
                text += value[i];
                continue;
            }
            switch (const char escape = value[++i]) {
            case 's':
                text += ' ';
                break;
            case 'n':
                text += '\n';
                break;
            case 't':
                text += '\t';
                break;
            case 'r':
                text += '\r';
                break;
            default:
                text += escape;
            }
        }
        return text;
    }

    // Plasma adds options to a key after a dollar sign, as in "URL[$e]": "e" means that variables in the value are
    // expanded, "i" and "d" only say who may change it.
    bool isExpandedKey(std::string_view key, std::string_view name)
    {
        if (!key.starts_with(name) || !key.substr(name.size()).starts_with("[$") || !key.ends_with(']'))
            return false;
        const std::string_view options = key.substr(name.size() + 2, key.size() - name.size() - 3);
        return options.find('e') != std::string_view::npos
            && options.find_first_not_of("eid") == std::string_view::npos;
    }

    bool isVariableCharacter(char c)
    {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    }

    // Replaces "$NAME" and "${NAME}" by the environment's values, and "$$" by a dollar sign. Commands in the text,
    // which older desktops ran, stay text.
    std::string withVariablesExpanded(const std::string& text)
    {
        std::string expanded;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] != '$' || i + 1 == text.size()) {
                expanded += text[i];
                continue;
            }
            if (text[i + 1] == '$') {
                expanded += text[++i];
                continue;
            }
            const bool isInBraces = text[i + 1] == '{';
            const std::size_t start = i + (isInBraces ? 2 : 1);
            std::size_t end = start;
            while (end < text.size() && isVariableCharacter(text[end]))
                ++end;
            if (end == start || (isInBraces && (end == text.size() || text[end] != '}'))) {
                expanded += text[i];
                continue;
            }
            if (const char* value = std::getenv(text.substr(start, end - start).c_str()))
                expanded += value;
            i = isInBraces ? end : end - 1;
        }
        return expanded;
    }

    // Returns the value as a URL. Plasma writes a path instead of a URL if it begins with the home directory.
    std::string addressFromExpanded(const std::string& value)
    {
        const std::string text = withVariablesExpanded(value);
        return text.starts_with('/') ? URL::fileURLWithPath(text).absoluteString() : text;
    }

    // Returns the URL of a link entry; nothing for entries of another type.
    std::optional<std::string> linkAddress(std::string_view text)
    {
        bool isInEntry = false;
        bool isLink = false;
        std::optional<std::string> address;
        while (!text.empty()) {
            const std::size_t end = std::min(text.find('\n'), text.size());
            const std::string_view line = trimmed(text.substr(0, end));
            text.remove_prefix(std::min(end + 1, text.size()));
            if (line.starts_with('[')) {
                isInEntry = line == "[Desktop Entry]";
                continue;
            }
            const std::size_t equals = line.find('=');
            if (!isInEntry || line.starts_with('#') || equals == std::string_view::npos)
                continue;
            const std::string_view key = trimmed(line.substr(0, equals));
            const std::string_view value = trimmed(line.substr(equals + 1));
            if (key == "Type")
                isLink = value == "Link";
            else if (key == "URL")
                address = unescapedValue(value);
            else if (isExpandedKey(key, "URL"))
                address = addressFromExpanded(unescapedValue(value));
        }
        return isLink ? address : std::nullopt;
    }

} // namespace

std::optional<URL> aliasTarget(const std::string& path)
{
    if (!hasAliasSuffix(path) || path.find('\0') != std::string::npos)
        return std::nullopt;
    const std::optional<std::string> address = linkAddress(readSmallFile(AT_FDCWD, path.c_str(), kMaximumSize));
    if (!address)
        return std::nullopt;
    Result<URL> target = URL::fromString(*address);
    return target ? std::optional(std::move(*target)) : std::nullopt;
}

Result<URL> URL::resolvingAliasFile(const URL& alias)
{
    if (std::optional<URL> target = aliasTarget(alias.path()))
        return std::move(*target);
    return Error::fromErrno(EINVAL, "couldn't find where the alias leads:", alias.path());
}

} // namespace quillbox
