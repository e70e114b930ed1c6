#pragma once

#include "NSMenu.h"
#include "NSObject.h"

#include <functional>
#include <memory>

namespace quillbox {

// What a right click on the icon offers, and what stands in for an empty menu.
class ShortMenu final : public NSObject {
public:
    ShortMenu(std::function<void()> open, std::function<void()> openPreferences, std::function<void()> quit);

    // The menu that sends its choices to `target`, which it does not keep alive.
    static std::shared_ptr<NSMenu> menu(const std::shared_ptr<ShortMenu>& target);

private:
    void openTheMenu(NSObject*) { open_(); }
    void openThePreferences(NSObject*) { openPreferences_(); }
    void quitTheApplication(NSObject*) { quit_(); }

    std::function<void()> open_;
    std::function<void()> openPreferences_;
    std::function<void()> quit_;
};

} // namespace quillbox
