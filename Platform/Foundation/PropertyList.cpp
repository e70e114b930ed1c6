#include "PropertyList.h"

#include "BinaryPropertyList.h"
#include "Unicode.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <plist/plist.h>
#include <string_view>

namespace quillbox {

namespace {

    constexpr std::size_t kMaximumXMLSize = std::size_t { 64 } << 20;

    // How deep arrays and dictionaries nest. libplist walks and frees its tree by recursion without a bound.
    int xmlDepth(std::string_view text)
    {
        int depth = 0;
        int deepest = 0;
        std::size_t position = 0;
        while ((position = text.find('<', position)) != std::string_view::npos) {
            const std::string_view rest = text.substr(position);
            const auto skipPast = [&](std::string_view end) {
                const std::size_t found = text.find(end, position);
                position = found == std::string_view::npos ? text.size() : found + end.size();
            };
            if (rest.starts_with("<!--")) {
                skipPast("-->");
            } else if (rest.starts_with("<?")) {
                skipPast("?>");
            } else if (rest.starts_with("<![CDATA[")) {
                skipPast("]]>");
            } else {
                if (rest.starts_with("<array") || rest.starts_with("<dict"))
                    deepest = std::max(deepest, ++depth);
                else if (rest.starts_with("</array") || rest.starts_with("</dict"))
                    --depth;
                skipPast(">");
                if (position >= 2 && text[position - 2] == '/' && depth > 0
                    && (rest.starts_with("<array") || rest.starts_with("<dict")))
                    --depth;
            }
        }
        return deepest;
    }

    // libplist reads the XML and hands it over in the binary form, whose reader keeps every value whole.
    Result<PropertyList> readXML(std::string_view text)
    {
        if (text.size() > kMaximumXMLSize)
            return Error { 0, "the property list is too large", {} };
        if (!unicode::isValidUTF8(text))
            return Error { 0, "the property list is damaged: it is not valid UTF-8", {} };
        if (xmlDepth(text) > binarypropertylist::kMaximumDepth)
            return Error { 0, "the property list is damaged: its values are nested too deeply", {} };
        plist_t tree = nullptr;
        plist_from_xml(text.data(), static_cast<std::uint32_t>(text.size()), &tree);
        const std::unique_ptr<void, void (*)(void*)> treeOwner(tree, plist_free);
        if (!tree)
            return Error { 0, "the property list is damaged: its XML can't be read", {} };
        char* bytes = nullptr;
        std::uint32_t length = 0;
        plist_to_bin(tree, &bytes, &length);
        const std::unique_ptr<char, void (*)(char*)> bytesOwner(bytes, plist_to_bin_free);
        if (!bytes)
            return Error { 0, "the property list is damaged: its XML can't be read", {} };
        return binarypropertylist::read(Data(bytes, bytes + length));
    }

} // namespace

std::optional<std::int64_t> PropertyList::asInt64() const
{
    if (const auto* number = as<std::int64_t>())
        return *number;
    const auto* number = as<std::uint64_t>();
    if (number && *number <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
        return static_cast<std::int64_t>(*number);
    return std::nullopt;
}

std::optional<std::uint64_t> PropertyList::asUInt64() const
{
    if (const auto* number = as<std::uint64_t>())
        return *number;
    const auto* number = as<std::int64_t>();
    if (number && *number >= 0)
        return static_cast<std::uint64_t>(*number);
    return std::nullopt;
}

const PropertyList* PropertyList::value(const std::string& key) const
{
    const auto* dictionary = as<Dictionary>();
    if (!dictionary)
        return nullptr;
    const auto entry = dictionary->find(key);
    return entry == dictionary->end() ? nullptr : &entry->second;
}

Result<Data> PropertyList::binaryData() const
{
    return binarypropertylist::write(*this);
}

Result<PropertyList> PropertyList::fromData(const Data& bytes)
{
    if (binarypropertylist::hasMagic(bytes))
        return binarypropertylist::read(bytes);
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos || text[first] != '<')
        return Error { 0, "the bytes are no property list", {} };
    return readXML(text.substr(first));
}

} // namespace quillbox
