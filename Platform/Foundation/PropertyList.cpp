#include "PropertyList.h"

#include "BinaryPropertyList.h"
#include "XMLPropertyList.h"

#include <limits>
#include <string_view>

namespace quillbox {

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
    return xmlpropertylist::read(text.substr(first));
}

} // namespace quillbox
