#pragma once

#include "MenuOptionFlags.h"
#include "NSMenu.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

using ItemList = NSMenu::ItemArray;

// Whom rows answer to: the status menu's controller, in both of its roles.
struct RowOwner {
    // The target of the rows' actions.
    std::weak_ptr<NSObject> target;
    // The delegate of the submenus that are filled when they open.
    std::weak_ptr<NSMenuDelegate> menuDelegate;
};

// The options of the configured item that rows descend from; they go unchanged into every submenu.
struct RowOptions {
    MenuOptionFlagsSv sv;
    MenuOptionFlagsDv dv;
};

// What went wrong while rows were made. The controller logs it.
struct RowProblem {
    // The controller's operation that met it, with its argument labels.
    std::string_view operation;
    std::string message;
};

// What was made, and the problems met on the way, in their order.
template <class T>
struct Made {
    T value;
    std::vector<RowProblem> problems;
};

// A row that only tells something. It has no action, so it is shown disabled.
std::shared_ptr<NSMenuItem> textRow(std::string title);
// A row that tells of something missing or failed, with the red dot.
std::shared_ptr<NSMenuItem> missingRow(const std::string& title);

// Gives the row the system's picture of that name, if there is one.
void setNamedImage(NSMenuItem& row, std::string_view name);

// The items in the order of their titles, equal ones in the order they came in.
ItemList sortedByTitle(ItemList items, bool ignoresArticles);

} // namespace quillbox
