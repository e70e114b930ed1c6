#pragma once

#include "FileReferenceURL.h"
#include "MainMenuItem.h"
#include "URL.h"

#include <string>
#include <vector>

namespace quillbox {

// The only reader and writer of what the user defaults hold of the menu: the list of top-level items, and one other
// setting. (How the open panel was left is kept there as well, by NSOpenPanel.)
// It also keeps the access to the files that the items point at, and notices when one has moved.
class ManageDefaults {
public:
    ManageDefaults() = delete;

    // The version of the records written today.
    static constexpr std::int64_t menusSaveVersion = 2;

    // Hands the live list to the user defaults, which write it when the event ends. Every item whose URL is known gets
    // a fresh bookmark. False where the list could not be encoded; that has been told then, and what was stored stays.
    static bool saveAppMenusToDisk();
    // Makes the live list from the stored one. With onlyLoadIfNeeded it first checks whether a picked file
    // could not be reached or has moved since the last load, the settings could not be read then, or another program
    // has changed them, and otherwise does nothing.
    static void loadAppMenusFromDisk(bool onlyLoadIfNeeded);
    // Both settings.
    static bool saveAllToDisk();
    static void loadAllFromDisk();
    // Loads them where another program has changed the stored ones since the last load; false where none has.
    static bool loadChangesOfOthers();

    // The list that stands in when nothing usable is stored: the same five objects each time.
    static const MainMenuItem::List& defaultMenuItems();

    // Whether the preferences window shows its Debug and Error Log tabs.
    static bool& showDebugTab();

    struct FileReference {
        FileReferenceURL reference;
        // Where the reference led when it was recorded.
        std::string path;
    };
    // One for each picked item whose bookmark resolved at the last load.
    static std::vector<FileReference>& fileReferences();
    // The URLs whose access is started now.
    static std::vector<URL>& securityScopedURLs();
};

} // namespace quillbox
