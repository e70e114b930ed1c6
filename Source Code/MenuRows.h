#pragma once

#include "MenuOptionFlags.h"
#include "NSMenu.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

using ItemList = NSMenu::ItemArray;

// The object to which the rows belong: the status menu's controller in both of its roles.
struct RowOwner {
    // The target of the rows' actions.
    std::weak_ptr<NSObject> target;
    // The delegate of those submenus that are filled when they open.
    std::weak_ptr<NSMenuDelegate> menuDelegate;
};

// The options of the configured item to which rows belong. They are passed unchanged to every submenu.
struct RowOptions {
    MenuOptionFlagsSv sv;
    MenuOptionFlagsDv dv;
};

// Something that went wrong while rows were made. The controller logs it.
struct RowProblem {
    // The controller's operation in which it happened, with its argument labels.
    std::string_view operation;
    std::string message;
};

// A result, and the problems met while it was made, in their order.
template <class T>
struct Made {
    T value;
    std::vector<RowProblem> problems;
};

// Makes a row that only shows a text. It has no action, so it is disabled.
std::shared_ptr<NSMenuItem> textRow(std::string title);
// Makes a row with the red dot, for something missing or failed.
std::shared_ptr<NSMenuItem> missingRow(const std::string& title);

// Gives the row the system's picture of that name, if there is one.
void setNamedImage(NSMenuItem& row, std::string_view name);

// Sorts the items by title. Equal titles keep their order.
ItemList sortedByTitle(ItemList items, bool ignoresArticles);

} // namespace quillbox
