#include "NSPasteboard.h"

#include <algorithm>

namespace quillbox {

NSPasteboardItem::NSPasteboardItem(std::shared_ptr<const NSPasteboardWriting> writer) : writer_(std::move(writer))
{
    for (const std::string& type : writer_->writableTypes()) {
        if (auto value = writer_->pasteboardPropertyList(type))
            setPropertyList(std::move(*value), type);
    }
}

NSPasteboardItem::NSPasteboardItem(URL fileURL, std::string text) : fileURL_(std::move(fileURL))
{
    setPropertyList(std::move(text), NSPasteboardTypeFileURL);
}

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

bool NSPasteboardItem::hasType(std::string_view type) const
{
    return std::any_of(values_.begin(), values_.end(),
                       [&](const auto& typeAndValue) { return typeAndValue.first == type; });
}

NSPasteboard::NSPasteboard(const std::vector<std::shared_ptr<NSPasteboardWriting>>& writers)
{
    items_.reserve(writers.size());
    for (const auto& writer : writers)
        items_.emplace_back(writer);
}

NSPasteboard NSPasteboard::ofFiles(const std::vector<std::string>& urlTexts)
{
    NSPasteboard result;
    result.items_.reserve(urlTexts.size());
    for (const std::string& text : urlTexts) {
        if (auto url = URL::fromString(text))
            result.items_.emplace_back(std::move(*url), text);
    }
    return result;
}

NSPasteboard NSPasteboard::promising(const std::string& type)
{
    NSPasteboard result;
    result.items_.emplace_back().setPropertyList(std::string(), type);
    return result;
}

bool NSPasteboard::hasType(std::string_view type) const
{
    return std::any_of(items_.begin(), items_.end(), [&](const NSPasteboardItem& item) { return item.hasType(type); });
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

std::optional<std::vector<URL>> NSPasteboard::fileURLs() const
{
    std::vector<URL> result;
    result.reserve(items_.size());
    for (const NSPasteboardItem& item : items_) {
        if (!item.fileURL())
            return std::nullopt;
        result.push_back(*item.fileURL());
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
