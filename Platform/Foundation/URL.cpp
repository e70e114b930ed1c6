#include "URL.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <optional>
#include <unistd.h>
#include <vector>

namespace quillbox {

namespace path {

    namespace {

        std::string_view withoutTrailingSlashes(std::string_view path)
        {
            while (path.size() > 1 && path.back() == '/')
                path.remove_suffix(1);
            return path;
        }

        // Returns how many bytes the extension and its dot take at the end of a path without trailing slashes.
        std::size_t extensionLength(std::string_view path)
        {
            const std::string_view name = lastPathComponent(path);
            const std::size_t dot = name.rfind('.');
            if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size()
                || name.find(' ', dot) != std::string_view::npos)
                return 0;
            return name.size() - dot;
        }

    } // namespace

    std::string_view lastPathComponent(std::string_view path)
    {
        path = withoutTrailingSlashes(path);
        const std::size_t slash = path.rfind('/');
        return slash == std::string_view::npos || path.size() == 1 ? path : path.substr(slash + 1);
    }

    std::string_view pathExtension(std::string_view path)
    {
        path = withoutTrailingSlashes(path);
        const std::size_t length = extensionLength(path);
        return length == 0 ? std::string_view() : path.substr(path.size() - length + 1);
    }

    std::string deletingPathExtension(std::string_view path)
    {
        path = withoutTrailingSlashes(path);
        return std::string(path.substr(0, path.size() - extensionLength(path)));
    }

    std::string appending(std::string_view directory, std::string_view component)
    {
        if (directory.empty() || component.empty())
            return std::string(directory.empty() ? component : directory);
        directory = withoutTrailingSlashes(directory);
        while (component.starts_with('/'))
            component.remove_prefix(1);
        std::string path;
        path.reserve(directory.size() + 1 + component.size());
        path += directory;
        if (path != "/")
            path += '/';
        path += component;
        return path;
    }

    std::string_view deletingLastPathComponent(std::string_view path)
    {
        path = withoutTrailingSlashes(path);
        const std::size_t slash = path.rfind('/');
        if (slash == std::string_view::npos)
            return {};
        return withoutTrailingSlashes(path.substr(0, std::max<std::size_t>(slash, 1)));
    }

} // namespace path

namespace {

    constexpr std::string_view kScheme = "file:";

    bool equalsIgnoringCase(std::string_view text, std::string_view lowerCase)
    {
        return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                          [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; });
    }

    constexpr std::array<bool, 256> kUnescapedInPaths = [] {
        std::array<bool, 256> table {};
        for (const char c : std::string_view("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                                             "-._~!$&'()*+,=:@/"))
            table[static_cast<unsigned char>(c)] = true;
        return table;
    }();

    int hexDigitValue(char c)
    {
        if (c >= '0' && c <= '9')
            return c - '0';
        if (c >= 'a' && c <= 'f')
            return c - 'a' + 10;
        if (c >= 'A' && c <= 'F')
            return c - 'A' + 10;
        return -1;
    }

    // Returns nothing if an escape is damaged or stands for what no path component can have (NUL, slash), or if a query
    // or fragment follows.
    std::optional<std::string> percentDecoded(std::string_view text)
    {
        std::string decoded;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] == '?' || text[i] == '#' || text[i] == '\0')
                return std::nullopt;
            if (text[i] != '%') {
                decoded += text[i];
                continue;
            }
            const int high = i + 2 < text.size() ? hexDigitValue(text[i + 1]) : -1;
            const int low = i + 2 < text.size() ? hexDigitValue(text[i + 2]) : -1;
            const int value = high * 16 + low;
            if (high < 0 || low < 0 || value == 0 || value == '/')
                return std::nullopt;
            decoded += static_cast<char>(value);
            i += 2;
        }
        return decoded;
    }

} // namespace

URL URL::fileURLWithPath(std::string_view path)
{
    URL url;
    if (path.empty())
        return url;
    if (path.starts_with('/')) {
        url.path_ = path::withoutTrailingSlashes(path);
    } else {
        char directory[PATH_MAX];
        if (!::getcwd(directory, sizeof directory))
            return url;
        url.path_ = path::appending(directory, path::withoutTrailingSlashes(path));
    }
    url.hasDirectoryPath_ = path.ends_with('/');
    return url;
}

Result<URL> URL::fromString(std::string_view absoluteString)
{
    const Error error { EINVAL, "couldn't read as a file URL", std::string(absoluteString) };
    if (absoluteString.size() < kScheme.size()
        || !equalsIgnoringCase(absoluteString.substr(0, kScheme.size()), kScheme))
        return error;
    std::string_view rest = absoluteString.substr(kScheme.size());
    if (rest.starts_with("//")) {
        rest.remove_prefix(2);
        const std::size_t slash = std::min(rest.find('/'), rest.size());
        const std::string_view host = rest.substr(0, slash);
        if (!host.empty() && !equalsIgnoringCase(host, "localhost"))
            return error;
        rest.remove_prefix(slash);
    }
    if (!rest.starts_with('/'))
        return error;
    const std::optional<std::string> path = percentDecoded(rest);
    if (!path)
        return error;
    return fileURLWithPath(*path);
}

std::string URL::absoluteString() const
{
    constexpr std::string_view kHexDigits = "0123456789ABCDEF";
    std::string text = "file://";
    for (const char c : path_) {
        const auto byte = static_cast<unsigned char>(c);
        if (kUnescapedInPaths[byte]) {
            text += c;
        } else {
            text += '%';
            text += kHexDigits[byte >> 4U];
            text += kHexDigits[byte & 15U];
        }
    }
    if (hasDirectoryPath_ && path_ != "/")
        text += '/';
    return text;
}

URL URL::appendingPathComponent(std::string_view component) const
{
    return fileURLWithPath(path::appending(path_, component));
}

URL URL::standardized() const
{
    URL url = *this;
    if (path_.empty())
        return url;
    std::vector<std::string_view> components;
    std::string_view rest = path_;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('/'), rest.size());
        const std::string_view component = rest.substr(0, end);
        if (component == "..") {
            if (!components.empty())
                components.pop_back();
        } else if (!component.empty() && component != ".") {
            components.push_back(component);
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    url.path_.clear();
    for (const std::string_view component : components) {
        url.path_ += '/';
        url.path_ += component;
    }
    if (url.path_.empty()) {
        url.path_ = "/";
        url.hasDirectoryPath_ = true;
    }
    return url;
}

} // namespace quillbox
