#pragma once

#include "OptionSet.h"

namespace quillbox {

// Options that the user sets for an item, saved with it.
using MenuOptionFlagsSv = OptionSet<struct MenuOptionFlagsSvTag>;

namespace menuOptionFlagsSv {
    // A plain-text item is shown disabled.
    inline constexpr MenuOptionFlagsSv showPlaintextAsDisabled { 1 };
    inline constexpr MenuOptionFlagsSv showHiddenItems { 2 };
    // File items show their path as a tool tip.
    inline constexpr MenuOptionFlagsSv showPathAsTooltip { 4 };
    // Recent items are listed newest first instead of by name.
    inline constexpr MenuOptionFlagsSv sortByDate { 8 };
    // A leading article or opening quote is ignored when names are sorted.
    inline constexpr MenuOptionFlagsSv ignoreArticles { 16 };
} // namespace menuOptionFlagsSv

// Options that follow from an item's kind. They are neither saved nor edited.
using MenuOptionFlagsDv = OptionSet<struct MenuOptionFlagsDvTag>;

namespace menuOptionFlagsDv {
    // Preference panes are shown by their display names.
    inline constexpr MenuOptionFlagsDv prefPaneDisplayNames { 1 };
} // namespace menuOptionFlagsDv

} // namespace quillbox
