#include "PlaceBookmarks.h"

#include "FileContents.h"
#include "Unicode.h"
#include "URL.h"

#include <pugixml.hpp>

#include <algorithm>
#include <iterator>

namespace quillbox {

namespace {

    constexpr std::size_t kLargestFile = std::size_t { 1 } << 20;
    constexpr std::size_t kMostBookmarks = 200;

    std::string withoutBlanksAround(std::string_view text)
    {
        constexpr std::string_view kBlanks = " \t\r\n";
        const std::size_t first = text.find_first_not_of(kBlanks);
        if (first == std::string_view::npos)
            return {};
        return std::string(text.substr(first, text.find_last_not_of(kBlanks) + 1 - first));
    }

    void add(std::vector<PlaceBookmark>& bookmarks, std::string_view url, std::string_view title)
    {
        if (const Result<URL> directory = URL::fromString(url))
            bookmarks.push_back({ directory->path(), unicode::displayText(withoutBlanksAround(title)) });
    }

    bool isTrue(const pugi::xml_node& metadata, const char* name)
    {
        return std::string_view(metadata.child(name).text().get()) == "true";
    }

    bool isPersons(const pugi::xml_node& bookmark)
    {
        const auto all = bookmark.child("info").children("metadata");
        return std::none_of(all.begin(), all.end(), [](const pugi::xml_node& metadata) {
            const bool isOfOneProgram = *metadata.child("OnlyInApp").text().get() != '\0';
            return isTrue(metadata, "isSystemItem") || isTrue(metadata, "IsHidden") || isOfOneProgram;
        });
    }

    std::string textOf(const Result<Data>& bytes)
    {
        return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
    }

} // namespace

std::vector<PlaceBookmark> readGtkBookmarks(std::string_view text)
{
    std::vector<PlaceBookmark> bookmarks;
    while (!text.empty() && bookmarks.size() < kMostBookmarks) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string line = withoutBlanksAround(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t blank = std::min(line.find(' '), line.size());
        add(bookmarks, std::string_view(line).substr(0, blank), std::string_view(line).substr(blank));
    }
    return bookmarks;
}

std::vector<PlaceBookmark> readPlasmaBookmarks(std::string_view xbel)
{
    pugi::xml_document document;
    // What comes before an error is in the document all the same.
    document.load_buffer(xbel.data(), xbel.size(), pugi::parse_minimal | pugi::parse_escapes | pugi::parse_cdata);
    std::vector<PlaceBookmark> bookmarks;
    for (const pugi::xml_node& bookmark : document.child("xbel").children("bookmark")) {
        if (bookmarks.size() == kMostBookmarks)
            break;
        if (isPersons(bookmark))
            add(bookmarks, bookmark.attribute("href").value(), bookmark.child("title").text().get());
    }
    return bookmarks;
}

std::vector<PlaceBookmark> placeBookmarks(const std::string& home, const std::string& configHome,
                                          const std::string& dataHome)
{
    Result<Data> gtk = readFile(path::appending(configHome, "gtk-3.0/bookmarks"), kLargestFile);
    // Where GTK kept them before its third version, and still looks when the newer file is missing.
    if (!gtk && gtk.error().isNotThere())
        gtk = readFile(path::appending(home, ".gtk-bookmarks"), kLargestFile);
    std::vector<PlaceBookmark> bookmarks = readGtkBookmarks(textOf(gtk));
    const auto plasma =
        readPlasmaBookmarks(textOf(readFile(path::appending(dataHome, "user-places.xbel"), kLargestFile)));
    std::copy(plasma.begin(), plasma.end(), std::back_inserter(bookmarks));
    return bookmarks;
}

} // namespace quillbox
