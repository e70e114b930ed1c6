#pragma once

#include "Date.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

// Knows when files and applications were last used. Implemented by the desktop's side; queries ask the one that is
// Installed.
class MetadataIndex {
public:
    virtual ~MetadataIndex() = default;
    // The paths last used between the two moments, both included, oldest first, each once.
    virtual std::vector<std::string> pathsLastUsed(Date from, Date until) = 0;
};

inline constexpr std::string_view kMDItemLastUsedDate = "kMDItemLastUsedDate";
inline constexpr std::string_view kMDItemPath = "kMDItemPath";

// One result of a query.
class MDItem {
public:
    explicit MDItem(std::string path) : path_(std::move(path)) { }
    // The value of kMDItemPath; no other attribute is known.
    std::optional<std::string> copyAttribute(std::string_view name) const;

private:
    std::string path_;
};

// A question to the index: which items were last used between a moment and the start of tomorrow. The one
// form of query text that is understood is the one the recent-items menus build; any other finds nothing.
class MDQuery {
public:
    MDQuery(std::string queryText, std::vector<std::string_view> sortingAttributes);
    // Answers before it returns. False where the text is not understood or there is no index.
    bool execute();
    // Results are in the order of the sorting attribute, smallest first.
    std::size_t resultCount() const { return results_.size(); }
    const MDItem& result(std::size_t atIndex) const { return results_[atIndex]; }

private:
    std::string queryText_;
    std::vector<std::string_view> sortingAttributes_;
    std::vector<MDItem> results_;
};

} // namespace quillbox
