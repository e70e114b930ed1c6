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
    if (!controller)
        controller = StatusMenuItemController::create();
}

void World::start()
{
    AppDelegate().applicationDidFinishLaunching();
    controller = AppDelegate::statusMenuItemController();
    AppDelegate::releaseStatusMenuItemController();
}

void World::configure(MainMenuItem::List items)
{
    MainMenuItem::actualMenuItems() = std::move(items);
    defaults.set(Data {}, "UserPickedMenuItems");
    defaults.set(std::int64_t { 3 }, "MenuSaveVersion");
    launch();
}

void World::store(const std::vector<MainMenuItemSaver>& records)
{
    defaults.set(*MainMenuItemSaver::encodeList(records), "UserPickedMenuItems");
    defaults.set(ManageDefaults::menusSaveVersion, "MenuSaveVersion");
    QB_CHECK(defaults.synchronize());
}

std::vector<MainMenuItemSaver> World::storedRecords() const
{
    return *MainMenuItemSaver::decodeList(*UserDefaults(defaults.path()).data("UserPickedMenuItems"));
}

std::string World::openedMenu()
{
    FakeUser person = user();
    person.open();
    return person.sees();
}

std::string World::openedSubmenu(std::string_view title)
{
    FakeUser person = user();
    person.open().openSubmenu(title);
    return joinedTitles(person.tracking().menu(1)->itemArray());
}

std::string World::joinedTitles(const ItemList& rows)
{
    std::string text;
    for (const auto& row : rows) {
        const std::string title = row->attributedTitle() ? row->attributedTitle()->string() : row->title();
        text += (row->isSeparatorItem() ? "---" : title) + "|";
    }
    return text;
}

ItemList World::items(const std::string& directory, MenuOptionFlagsSv sv, MenuOptionFlagsDv dv)
{
    launch();
    const std::string path = directory.starts_with('/') ? directory : files.path(directory);
    return *controller->createSubMenuItems(URL::fileURLWithPath(path), false, sv, dv);
}

std::string World::rows(const std::string& directory)
{
    NSMenu menu;
    menu.setItemArray(items(directory));
    return menuDump(menu);
}

std::vector<std::string> World::titles(const std::string& directory, MenuOptionFlagsSv sv, MenuOptionFlagsDv dv)
{
    std::vector<std::string> result;
    for (const auto& item : items(directory, sv, dv))
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

std::shared_ptr<MainMenuItem> item(MenuItemType type, const std::optional<std::string>& title, MenuOptionFlagsSv sv)
{
    return std::make_shared<MainMenuItem>(type, title, std::nullopt, std::nullopt, sv);
}

std::shared_ptr<MainMenuItem> pickedItem(const std::string& path)
{
    return std::make_shared<MainMenuItem>(MenuItemType::arbitraryPath, std::string(path::lastPathComponent(path)), path,
                                          URL::fileURLWithPath(path));
}

} // namespace quillbox
