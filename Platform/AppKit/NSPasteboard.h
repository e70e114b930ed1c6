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

// The types of the system: plain text, and the "file:" text of a file's URL.
inline const std::string NSPasteboardTypeString = "public.utf8-plain-text";
inline const std::string NSPasteboardTypeFileURL = "public.file-url";

// An object that can be put on a pasteboard. It tells which types it offers, the best one first, and its value for
// each.
class NSPasteboardWriting {
public:
    virtual ~NSPasteboardWriting() = default;
    virtual std::vector<std::string> writableTypes() const = 0;
    // Returns nothing for a type that it does not offer.
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
    // The types in the order in which they were set.
    std::vector<std::string> types() const;
    bool hasType(std::string_view type) const;
    // The file that the item names, if it was made from one.
    const std::optional<URL>& fileURL() const { return fileURL_; }
    // The object that was put on the pasteboard; null for items of another program. By it a table recognises its own
    // drag among equal ones of another table.
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
    // Makes one item of each writer's values, in that order.
    explicit NSPasteboard(const std::vector<std::shared_ptr<NSPasteboardWriting>>& writers);
    // Makes the pasteboard of a drag from another program: one item for each text that is the URL of a file. Other
    // texts are left out.
    static NSPasteboard ofFiles(const std::vector<std::string>& urlTexts);
    // Makes the pasteboard of a drag from another program whose data has not been asked for yet: one item of that type
    // with an empty value.
    static NSPasteboard promising(const std::string& type);

    const Items& items() const { return items_; }
    bool hasType(std::string_view type) const;
    // Returns the items' values of that type, in their order. Items without such a value are skipped.
    std::vector<PropertyList> propertyLists(const std::string& forType) const;
    // Returns the files that the items name, in their order; nothing if an item names no file.
    std::optional<std::vector<URL>> fileURLs() const;
    // Returns what other programs get: the items' plain texts, one a line.
    std::string plainText() const;

private:
    Items items_;
};

} // namespace quillbox
