#pragma once

#include "Data.h"
#include "Date.h"
#include "Result.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quillbox {

class MainMenuItem;

// A configured item as it is stored today (record version 2): a flat record, every field a key of its own
// name in a dictionary of the binary property list.
struct MainMenuItemSaver {
    MainMenuItemSaver() = default;
    // Makes a fresh bookmark of the item's URL; where there is none to make, keeps the bytes last loaded.
    explicit MainMenuItemSaver(const MainMenuItem& item);

    // All keys of all records must be there with values of their very types; else the whole list fails.
    static Result<std::vector<MainMenuItemSaver>> decodeList(const Data& bytes);
    static Result<Data> encodeList(const std::vector<MainMenuItemSaver>& records);

    std::string menuItemType;
    std::string displayString;
    // Valid UTF-8; empty where the item has no path. The bookmark has the exact bytes.
    std::string unixPath;
    Data bookmarkData;
    std::uint64_t optionFlags = 0;
    Date noRecentItemsOlderThan;
    std::int64_t maxNumberOfRecentItems = 0;

    friend bool operator==(const MainMenuItemSaver&, const MainMenuItemSaver&) = default;
};

// The record of older programs (version 1): read, never written.
struct MainMenuItemSaver_v1 {
    static Result<std::vector<MainMenuItemSaver_v1>> decodeList(const Data& bytes);
    MainMenuItemSaver upgraded() const;

    std::string menuItemType;
    std::string displayString;
    std::string unixPath;
    Data bookmarkData;
    bool showHiddenFiles = false;
    bool showPathAsTooltip = false;
    bool showAsEnabled = false;
    Date noRecentItemsOlderThan;
    std::int64_t maxNumberOfRecentItems = 0;
};

} // namespace quillbox
