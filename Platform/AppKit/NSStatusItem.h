#pragma once

#include "NSImage.h"
#include "NSMenu.h"

#include <memory>
#include <optional>

namespace quillbox {

struct NSStatusBarButton {
    std::optional<NSImage> image;
};

// One place in the status bar: an icon and the menu that a click on it opens.
class NSStatusItem {
public:
    static constexpr double variableLength = -1;

    explicit NSStatusItem(double length) : length_(length), button_(NSStatusBarButton {}) { }
    ~NSStatusItem();
    NSStatusItem(const NSStatusItem&) = delete;
    NSStatusItem& operator=(const NSStatusItem&) = delete;

    double length() const { return length_; }
    // The pointer is null if the status bar gave the item no button.
    NSStatusBarButton* button() { return button_ ? &*button_ : nullptr; }
    // Setting the menu tells the desktop.
    const std::shared_ptr<NSMenu>& menu() const { return menu_; }
    void setMenu(std::shared_ptr<NSMenu> menu);

private:
    double length_;
    std::optional<NSStatusBarButton> button_;
    std::shared_ptr<NSMenu> menu_;
};

// The status bar of the desktop. It makes status items; the installed Desktop shows them.
class NSStatusBar {
public:
    static NSStatusBar& systemStatusBar();
    // The bar keeps no reference, so the item ends when its owner releases it.
    std::shared_ptr<NSStatusItem> statusItem(double withLength);
};

} // namespace quillbox
