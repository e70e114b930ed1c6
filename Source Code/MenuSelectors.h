#pragma once

#include "NSObject.h"

// The actions of StatusMenuItemController as the rows of the menu carry them.
namespace quillbox::selectors {

extern const Selector doNothing;
extern const Selector openAppPreferencesWindow;
extern const Selector openSystemSettings;
extern const Selector openTheClickedFile;
extern const Selector clearRecentItemsMenu;

} // namespace quillbox::selectors
