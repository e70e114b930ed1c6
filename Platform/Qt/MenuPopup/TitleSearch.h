#pragma once

#include "NSMenu.h"

#include <QString>

#include <cstdint>
#include <string>
#include <vector>

namespace quillbox {

// Finds the rows of a menu whose titles contain what is typed, without regard to case and accents. It folds all titles
// once, into one text that each search runs through, so that a letter takes a few milliseconds among 100,000 rows. It
// makes no rows and keeps none; the menu must not change while it is used. Rows that can't be chosen are never found.
class TitleSearch {
public:
    using Rows = std::vector<std::uint32_t>;

    explicit TitleSearch(const NSMenu& menu);

    // Returns the indexes of the items: first those whose titles begin with the text, then those in which a word does,
    // then those that contain it anywhere, each in the menu's order. An empty text is in no title.
    Rows rowsContaining(const QString& typed) const;

private:
    // Titles follow each other, each after a byte that is in none. `begins_` has a last element for the end.
    std::string titles_;
    std::vector<std::uint32_t> begins_;
    // Whether a word begins at that byte of the titles.
    std::vector<char> wordBegins_;
    Rows rows_;
};

} // namespace quillbox
