#pragma once

#include "NSMenu.h"

#include <memory>
#include <string>

namespace quillbox {

// What a right click on the row of a file offers: to open it, also with another application, to show it in the file
// manager, and to copy its path. It is the target of its menu's rows, which refer to it weakly, and keeps the row that
// it serves. The applications are looked for when their submenu opens.
class RowMenu final : public NSObject, public NSMenuDelegate {
public:
    // `row` stands for a file, has an action, and an alternate action that shows the file.
    explicit RowMenu(std::shared_ptr<NSMenuItem> row);

    // Makes a menu whose rows `target` serves.
    static std::shared_ptr<NSMenu> menu(const std::shared_ptr<RowMenu>& target);

    void menuNeedsUpdate(NSMenu& openWithMenu) override;
    void menuWillOpen(NSMenu&) override { }
    void menuDidClose(NSMenu&) override { }

private:
    class ApplicationItem;

    void openTheRow(NSObject* sender);
    void openWithTheApplication(ApplicationItem* sender);
    void showTheRow(NSObject* sender);
    void copyThePath(NSObject* sender);

    std::shared_ptr<NSMenuItem> row_;
    // The target of the applications' rows.
    std::weak_ptr<RowMenu> self_;
};

} // namespace quillbox
