#include "LinkChain.h"

#include "AliasFile.h"
#include "FileManager.h"
#include "URL.h"

namespace quillbox {

namespace {

    struct Element {
        URLResourceValues values;
        // Where the link leads; empty if the element is no link.
        std::string next;
    };

    std::string besideLink(const std::string& link, const std::string& target)
    {
        return target.starts_with('/') ? target : path::appending(path::deletingLastPathComponent(link), target);
    }

    // All questions to the file system are asked here, for one element at a time.
    std::optional<Element> elementAt(const std::string& path)
    {
        constexpr URLResourceKey kKeys = URLResourceKey::isDirectory | URLResourceKey::isPackage
            | URLResourceKey::isAliasFile | URLResourceKey::isSymbolicLink;
        auto values = URL::fileURLWithPath(path).resourceValues(kKeys);
        if (!values)
            return std::nullopt;
        Element element { std::move(*values), {} };
        if (element.values.isAliasFile.value_or(false)) {
            const auto target = aliasTarget(path);
            if (!target)
                return std::nullopt;
            element.next = target->path();
        } else if (element.values.isSymbolicLink.value_or(false)) {
            const auto target = FileManager::defaultManager().destinationOfSymbolicLink(path);
            if (!target)
                return std::nullopt;
            element.next = besideLink(path, *target);
        }
        return element;
    }

} // namespace

std::optional<LinkEnd> endOfLinks(const std::string& start)
{
    std::string path = start;
    for (int looked = 0; looked < kMaximumLinkElements; ++looked) {
        auto element = elementAt(path);
        if (!element)
            return std::nullopt;
        if (element->next.empty())
            return LinkEnd { std::move(path), std::move(element->values) };
        path = std::move(element->next);
    }
    return std::nullopt;
}

} // namespace quillbox
