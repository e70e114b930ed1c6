#include "ShortMenu.h"

namespace quillbox {

ShortMenu::ShortMenu(std::function<void()> open, std::function<void()> openPreferences, std::function<void()> quit)
    : open_(std::move(open)),
      openPreferences_(std::move(openPreferences)),
      quit_(std::move(quit))
{
}

std::shared_ptr<NSMenu> ShortMenu::menu(const std::shared_ptr<ShortMenu>& target)
{
    static const Selector open = makeSelector<&ShortMenu::openTheMenu>("openTheMenuWithSender:");
    static const Selector preferences = makeSelector<&ShortMenu::openThePreferences>("openThePreferencesWithSender:");
    static const Selector quit = makeSelector<&ShortMenu::quitTheApplication>("quitTheApplicationWithSender:");
    auto result = std::make_shared<NSMenu>("Quillbox");
    const auto add = [&](const char* title, const Selector& action) {
        auto item = std::make_shared<NSMenuItem>(title, &action);
        item->setTarget(target);
        result->addItem(std::move(item));
    };
    add("Open", open);
    add("Preferences...", preferences);
    result->addItem(NSMenuItem::separatorItem());
    add("Quit", quit);
    return result;
}

} // namespace quillbox
