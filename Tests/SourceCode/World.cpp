#include "World.h"

#include "AppDelegate.h"
#include "Debug.h"
#include "ManageDefaults.h"
#include "MenuDump.h"

namespace quillbox {

std::vector<URL> NamedDirectories::urls(SearchPathDirectory directory, SearchPathDomainMask domains)
{
    std::vector<URL> result;
    for (const auto domain : { SearchPathDomainMask::localDomainMask, SearchPathDomainMask::systemDomainMask,
                               SearchPathDomainMask::userDomainMask }) {
        if ((static_cast<unsigned>(domains) & static_cast<unsigned>(domain)) == 0)
            continue;
        for (const std::string& path : paths[{ directory, domain }])
            result.push_back(URL::fileURLWithPath(path));
    }
    return result;
}

World::World()
{
    empty();
}

World::~World()
{
    controller.reset();
    empty();
}

void World::empty()
{
    MainMenuItem::actualMenuItems().clear();
    ManageDefaults::fileReferences().clear();
    ManageDefaults::securityScopedURLs().clear();
    ManageDefaults::showDebugTab() = false;
    Debug::errorLog().clear();
    Debug::dynamicMenuItems().clear();
    menuNeedsUpdateCount() = 0;
}

void World::launch()
{
    controller = StatusMenuItemController::create();
}

void World::configure(std::vector<std::shared_ptr<MainMenuItem>> items)
{
    MainMenuItem::actualMenuItems() = std::move(items);
    defaults.set(Data {}, "UserPickedMenuItems");
    defaults.set(std::int64_t { 3 }, "MenuSaveVersion");
    if (!controller)
        launch();
}

std::string World::openedMenu()
{
    FakeUser person = user();
    person.open();
    std::string text = person.sees();
    person.close();
    return text;
}

std::string World::rows(const std::string& directory, MenuOptionFlagsSv sv, MenuOptionFlagsDv dv)
{
    if (!controller)
        launch();
    NSMenu menu;
    menu.setItemArray(
        controller->createSubMenuItems(URL::fileURLWithPath(directory), false, sv, dv).value_or(NSMenu::ItemArray {}));
    return menuDump(menu);
}

std::vector<std::string> World::titles(const std::string& directory, MenuOptionFlagsSv sv)
{
    if (!controller)
        launch();
    std::vector<std::string> result;
    const auto items = controller->createSubMenuItems(URL::fileURLWithPath(directory), false, sv, {});
    for (const auto& item : *items)
        result.push_back(item->title());
    return result;
}

std::vector<std::string> World::loggedMessages()
{
    std::vector<std::string> messages;
    for (const AttributedString& entry : Debug::errorLog()) {
        const std::string& body = entry.runs().back().text;
        messages.push_back(body.substr(body.find("\n\n", 2) + 2));
    }
    return messages;
}

std::shared_ptr<MainMenuItem> pickedItem(const std::string& path, MenuOptionFlagsSv sv)
{
    return std::make_shared<MainMenuItem>(MenuItemType::arbitraryPath, std::string(path::lastPathComponent(path)), path,
                                          URL::fileURLWithPath(path), sv);
}

} // namespace quillbox
