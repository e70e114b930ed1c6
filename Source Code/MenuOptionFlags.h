#pragma once

#include "OptionSet.h"

namespace quillbox {

// Options that the person sets for an item and that are saved with it.
using MenuOptionFlagsSv = OptionSet<struct MenuOptionFlagsSvTag>;

namespace menuOptionFlagsSv {
    // A label is shown disabled.
    inline constexpr MenuOptionFlagsSv showPlaintextAsDisabled { 1 };
    inline constexpr MenuOptionFlagsSv showHiddenItems { 2 };
    // File items get their path as tool tip.
    inline constexpr MenuOptionFlagsSv showPathAsTooltip { 4 };
    // Recent items newest first instead of by name.
    inline constexpr MenuOptionFlagsSv sortByDate { 8 };
    // A leading article or opening quote does not count when names are sorted.
    inline constexpr MenuOptionFlagsSv ignoreArticles { 16 };
} // namespace menuOptionFlagsSv

// Options that follow from an item's kind; never saved, never edited.
using MenuOptionFlagsDv = OptionSet<struct MenuOptionFlagsDvTag>;

namespace menuOptionFlagsDv {
    // Preference panes are titled by their display names.
    inline constexpr MenuOptionFlagsDv prefPaneDisplayNames { 1 };
} // namespace menuOptionFlagsDv

} // namespace quillbox
