#include "BundleName.h"

#include "URL.h"

#include <cstddef>

namespace quillbox {

namespace {

    constexpr std::size_t kLongestFileName = 255;
    // This leaves at least half of a file name to the title.
    constexpr std::size_t kLongestDistinction = 120;

    std::string_view cutToFit(std::string_view text, std::size_t length)
    {
        if (text.size() <= length)
            return text;
        while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
            --length;
        return text.substr(0, length);
    }

} // namespace

std::string bundleName(std::string_view title, std::string_view distinction, std::string_view extension)
{
    std::string name;
    // A name that begins with a dot would be hidden. LEFT-TO-RIGHT MARK before it is invisible.
    if (title.starts_with('.'))
        name = "\u200E";
    for (const char c : title) {
        if (c == '/')
            name += "\u2215";
        else
            name += c;
    }
    std::string ending;
    if (!distinction.empty())
        ending.append(" (").append(cutToFit(distinction, kLongestDistinction)).append(")");
    ending += extension;
    return std::string(cutToFit(name, kLongestFileName - ending.size())) + ending;
}

std::string BundleNames::nameIn(const std::string& directory, std::string_view title, std::string_view desktopId,
                                std::string_view extension)
{
    std::string name = bundleName(title, {}, extension);
    if (take_(path::appending(directory, name)))
        return name;
    name = bundleName(title, desktopId, extension);
    const std::string path = path::appending(directory, name);
    const auto [entry, isFirst] = nextNumber_.try_emplace(path, 2);
    // Long ids are cut, so several of them may give the same name.
    if (isFirst && take_(path))
        return name;
    do {
        name = bundleName(title, std::to_string(entry->second++).append(" ").append(desktopId), extension);
    } while (!take_(path::appending(directory, name)));
    return name;
}

} // namespace quillbox
