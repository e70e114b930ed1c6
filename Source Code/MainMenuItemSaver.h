#pragma once

#include "Data.h"
#include "Date.h"
#include "Result.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quillbox {

class MainMenuItem;

// A configured item as it is stored today (record version 2). A record is a dictionary in the binary property list;
// each field is stored under its own name.
struct MainMenuItemSaver {
    MainMenuItemSaver() = default;
    // Makes a new bookmark of the item's URL. If that is impossible, it keeps the bytes last loaded.
    explicit MainMenuItemSaver(const MainMenuItem& item);

    // Reads a list of records. The whole list fails if any record lacks a key or has a value of another type.
    static Result<std::vector<MainMenuItemSaver>> decodeList(const Data& bytes);
    static Result<Data> encodeList(const std::vector<MainMenuItemSaver>& records);

    std::string menuItemType;
    std::string displayString;
    // Valid UTF-8, and empty if the item has no path. The bookmark has the exact bytes.
    std::string unixPath;
    Data bookmarkData;
    std::uint64_t optionFlags = 0;
    Date noRecentItemsOlderThan;
    std::int64_t maxNumberOfRecentItems = 0;

    friend bool operator==(const MainMenuItemSaver&, const MainMenuItemSaver&) = default;
};

// The record of older programs (version 1), which is read but never written.
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
