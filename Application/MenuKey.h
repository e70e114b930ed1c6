#pragma once

#include <functional>
#include <memory>
#include <string>

namespace quillbox {

class ShortcutPortal;

// The key that opens the menu from anywhere, on desktops that give keys to programs which ask for one. A user who wants
// none is asked only once.
class MenuKey {
public:
    // `name` identifies the key for the desktop. If the file `refusal` exists, no key is wanted. `onPressed` gets an
    // activation token, which is the right to take the focus, or an empty text.
    MenuKey(const std::string& name, const std::string& refusal,
            std::function<void(const std::string& activationToken)> onPressed);
    ~MenuKey();
    MenuKey(const MenuKey&) = delete;
    MenuKey& operator=(const MenuKey&) = delete;

private:
    // Null if no key is wanted.
    std::unique_ptr<ShortcutPortal> portal_;
};

} // namespace quillbox
