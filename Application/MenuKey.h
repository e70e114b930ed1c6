#pragma once

#include <functional>
#include <memory>
#include <string>

namespace quillbox {

class ShortcutPortal;

// The key that opens the menu from anywhere, where the desktop gives keys to programs that ask for one. A person who
// wants none is asked once and no more.
class MenuKey {
public:
    // `name` is the key's for the desktop; `refusal` is the file that says that no key is wanted. `onPressed` gets
    // the right to take the focus, or an empty text.
    MenuKey(const std::string& name, const std::string& refusal,
            std::function<void(const std::string& activationToken)> onPressed);
    ~MenuKey();
    MenuKey(const MenuKey&) = delete;
    MenuKey& operator=(const MenuKey&) = delete;

private:
    // Null where no key is wanted.
    std::unique_ptr<ShortcutPortal> portal_;
};

} // namespace quillbox
