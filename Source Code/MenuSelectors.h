#pragma once

#include "NSObject.h"

// The actions of StatusMenuItemController to which the menu's rows refer.
namespace quillbox::selectors {

extern const Selector doNothing;
extern const Selector openAppPreferencesWindow;
extern const Selector openSystemSettings;
extern const Selector openTheClickedFile;
extern const Selector showTheClickedFile;
extern const Selector clearRecentItemsMenu;

} // namespace quillbox::selectors
