#pragma once

#include "Date.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

// Knows when files and applications were last used. The desktop's side implements it; queries ask the one that is
// installed.
class MetadataIndex {
public:
    virtual ~MetadataIndex() = default;
    // Returns the paths last used between the two moments, both included, oldest first and each once.
    virtual std::vector<std::string> pathsLastUsed(Date from, Date until) = 0;
};

inline constexpr std::string_view kMDItemLastUsedDate = "kMDItemLastUsedDate";
inline constexpr std::string_view kMDItemPath = "kMDItemPath";

// One result of a query.
class MDItem {
public:
    explicit MDItem(std::string path) : path_(std::move(path)) { }
    // Returns the value of kMDItemPath; every other attribute is unknown.
    std::optional<std::string> copyAttribute(std::string_view name) const;

private:
    std::string path_;
};

// Asks the index which items were last used between a moment and the start of tomorrow. Only the form of query text
// that the recent-items menus build is understood; any other finds nothing.
class MDQuery {
public:
    MDQuery(std::string queryText, std::vector<std::string_view> sortingAttributes);
    // Runs the query and returns when the results are there. Returns false if the text is not understood or there is no
    // index.
    bool execute();
    // Results are in ascending order of the sorting attribute.
    std::size_t resultCount() const { return results_.size(); }
    const MDItem& result(std::size_t atIndex) const { return results_[atIndex]; }

private:
    std::string queryText_;
    std::vector<std::string_view> sortingAttributes_;
    std::vector<MDItem> results_;
};

} // namespace quillbox
