#pragma once

#include "PropertyList.h"
#include "URL.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillbox {

// Types of the system: plain text, and the "file:" text of a file's URL.
inline const std::string NSPasteboardTypeString = "public.utf8-plain-text";
inline const std::string NSPasteboardTypeFileURL = "public.file-url";

// Something that can be put on a pasteboard: which types it offers, the best first, and its value for each.
class NSPasteboardWriting {
public:
    virtual ~NSPasteboardWriting() = default;
    virtual std::vector<std::string> writableTypes() const = 0;
    // None for a type that it does not offer.
    virtual std::optional<PropertyList> pasteboardPropertyList(const std::string& forType) const = 0;
};

// One thing on a pasteboard, with a value for each of its types.
class NSPasteboardItem {
public:
    NSPasteboardItem() = default;
    explicit NSPasteboardItem(std::shared_ptr<const NSPasteboardWriting> writer);
    NSPasteboardItem(URL fileURL, std::string text);

    void setPropertyList(PropertyList value, std::string forType);
    std::optional<PropertyList> propertyList(const std::string& forType) const;
    // In the order in which they were set.
    std::vector<std::string> types() const;
    bool hasType(std::string_view type) const;
    // The file that it names, if it was made of one.
    const std::optional<URL>& fileURL() const { return fileURL_; }
    // Who put it on the pasteboard; null for what comes from another program. This is how a drag is told from an equal
    // one of another table.
    const std::shared_ptr<const NSPasteboardWriting>& writer() const { return writer_; }

private:
    std::vector<std::pair<std::string, PropertyList>> values_;
    std::optional<URL> fileURL_;
    std::shared_ptr<const NSPasteboardWriting> writer_;
};

// What a drag carries: a plain value, made when the drag begins.
class NSPasteboard {
public:
    using Items = std::vector<NSPasteboardItem>;

    NSPasteboard() = default;
    // The values of each writer, one item each, in that order.
    explicit NSPasteboard(const std::vector<std::shared_ptr<NSPasteboardWriting>>& writers);
    // Of another program: one item for each text that is a URL of a file; others are left out.
    static NSPasteboard ofFiles(const std::vector<std::string>& urlTexts);
    // Of another program whose data has not been asked for: one item of that type, without a value.
    static NSPasteboard promising(const std::string& type);

    const Items& items() const { return items_; }
    bool hasType(std::string_view type) const;
    // The items' values of that type, in their order; items without one are passed over.
    std::vector<PropertyList> propertyLists(const std::string& forType) const;
    // The files that the items name, in their order; none where an item is something else.
    std::optional<std::vector<URL>> fileURLs() const;
    // What other programs get: the items' plain texts, a line each.
    std::string plainText() const;

private:
    Items items_;
};

} // namespace quillbox
