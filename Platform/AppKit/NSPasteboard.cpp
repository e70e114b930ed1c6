#include "NSPasteboard.h"

#include <algorithm>

namespace quillbox {

void NSPasteboardItem::setPropertyList(PropertyList value, std::string forType)
{
    const auto known = std::find_if(values_.begin(), values_.end(),
                                    [&](const auto& typeAndValue) { return typeAndValue.first == forType; });
    if (known != values_.end())
        known->second = std::move(value);
    else
        values_.emplace_back(std::move(forType), std::move(value));
}

std::optional<PropertyList> NSPasteboardItem::propertyList(const std::string& forType) const
{
    for (const auto& [type, value] : values_) {
        if (type == forType)
            return value;
    }
    return std::nullopt;
}

std::vector<std::string> NSPasteboardItem::types() const
{
    std::vector<std::string> result;
    result.reserve(values_.size());
    for (const auto& typeAndValue : values_)
        result.push_back(typeAndValue.first);
    return result;
}

NSPasteboard::NSPasteboard(const std::vector<std::shared_ptr<NSPasteboardWriting>>& writers)
{
    items_.reserve(writers.size());
    for (const auto& writer : writers) {
        NSPasteboardItem item;
        for (const std::string& type : writer->writableTypes()) {
            if (auto value = writer->pasteboardPropertyList(type))
                item.setPropertyList(std::move(*value), type);
        }
        items_.push_back(std::move(item));
    }
}

NSPasteboard NSPasteboard::ofFiles(const std::vector<std::string>& urlTexts)
{
    NSPasteboard result;
    for (const std::string& text : urlTexts) {
        if (!URL::fromString(text))
            continue;
        NSPasteboardItem item;
        item.setPropertyList(text, NSPasteboardTypeFileURL);
        result.items_.push_back(std::move(item));
    }
    return result;
}

bool NSPasteboard::hasType(std::string_view type) const
{
    return std::any_of(items_.begin(), items_.end(),
                       [&](const NSPasteboardItem& item) { return item.propertyList(std::string(type)).has_value(); });
}

std::vector<PropertyList> NSPasteboard::propertyLists(const std::string& forType) const
{
    std::vector<PropertyList> result;
    for (const NSPasteboardItem& item : items_) {
        if (auto value = item.propertyList(forType))
            result.push_back(std::move(*value));
    }
    return result;
}

std::optional<std::vector<URL>> NSPasteboard::urls() const
{
    std::vector<URL> result;
    for (const NSPasteboardItem& item : items_) {
        const auto value = item.propertyList(NSPasteboardTypeFileURL);
        const std::string* text = value ? value->as<std::string>() : nullptr;
        auto url = text ? URL::fromString(*text) : Result<URL>(Error {});
        if (!url)
            return std::nullopt;
        result.push_back(std::move(*url));
    }
    return result;
}

std::string NSPasteboard::plainText() const
{
    std::string result;
    for (const PropertyList& value : propertyLists(NSPasteboardTypeString)) {
        if (const auto* text = value.as<std::string>()) {
            if (!result.empty())
                result += '\n';
            result += *text;
        }
    }
    return result;
}

} // namespace quillbox
