#pragma once

#include "NSGeometry.h"

namespace quillbox {

class UserDefaults;

// How the person has arranged the last open panel: the next one looks the same, also in another session. NSOpenPanel
// reads it when it begins and stores it when it ends; the display shows it and notes what the person changes.
struct OpenPanelSettings {
    enum class Order { name, size, modified };

    // The size of the panel's contents, in points; 0 by 0 as long as the person has not resized a panel.
    NSSize size;
    Order order = Order::name;
    bool isAscending = true;
    bool showsHiddenFiles = false;

    // What is missing or of no use counts as never changed.
    static OpenPanelSettings read(UserDefaults& defaults);
    // Sets what differs from what is stored; while the settings can't be read, nothing.
    void store(UserDefaults& defaults) const;

    friend bool operator==(const OpenPanelSettings&, const OpenPanelSettings&) = default;
};

} // namespace quillbox
