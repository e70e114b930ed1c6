#pragma once

#include "FileReferenceURL.h"
#include "MainMenuItem.h"
#include "URL.h"

#include <string>
#include <vector>

namespace quillbox {

// The only reader and writer of the menu's part of the user defaults: the list of top-level items, and one other
// setting. (NSOpenPanel stores there how the open panel was left.) It also keeps the access to the files that the items
// refer to, and notices when one has moved.
class ManageDefaults {
public:
    ManageDefaults() = delete;

    // The version of the records that are written today.
    static constexpr std::int64_t menusSaveVersion = 2;

    // Stores the live list in the user defaults, which write it when the event ends. Every item whose URL is known gets
    // a new bookmark. Returns false if the list could not be encoded; the user has been told then, and the stored list
    // is unchanged.
    static bool saveAppMenusToDisk();
    // Makes the live list from the stored one. With onlyLoadIfNeeded it first checks whether a picked file
    // could not be reached or has moved since the last load, the settings could not be read then, or another program
    // has changed them, and otherwise does nothing.
    static void loadAppMenusFromDisk(bool onlyLoadIfNeeded);
    // These save and load both settings.
    static bool saveAllToDisk();
    static void loadAllFromDisk();
    // Loads them where another program has changed the stored ones since the last load; false where none has.
    static bool loadChangesOfOthers();

    // The list that is used when nothing usable is stored; it always holds the same five objects.
    static const MainMenuItem::List& defaultMenuItems();

    // Whether the preferences window shows its Debug and Error Log tabs.
    static bool& showDebugTab();

    struct FileReference {
        FileReferenceURL reference;
        // The path of the file when the reference was made.
        std::string path;
    };
    // One for each picked item whose bookmark could be resolved at the last load.
    static std::vector<FileReference>& fileReferences();
    // The URLs to which access has been started.
    static std::vector<URL>& securityScopedURLs();
};

} // namespace quillbox
