#include "MenuWorld.h"

#include "NSApplication.h"

#include <QCoreApplication>

#include <utility>

namespace quillbox {

class MenuWorld::Recorder final : public NSObject, public NSMenuDelegate {
public:
    explicit Recorder(MenuWorld& world) : world_(world) { }

    void menuNeedsUpdate(NSMenu& menu) override
    {
        world_.log.push_back("update " + menu.title());
        if (const auto rows = world_.contents.find(menu.title()); rows != world_.contents.end())
            menu.setItemArray(rows->second());
    }
    void menuWillOpen(NSMenu& menu) override { world_.log.push_back("open " + menu.title()); }
    void menuDidClose(NSMenu& menu) override
    {
        world_.log.push_back("close " + menu.title());
        if (!menu.supermenu())
            menu.removeAllItems();
    }

    void choose(NSMenuItem* item)
    {
        world_.log.push_back("chose " + item->title() + " with " + std::to_string(PopupUser::popups().size())
                             + " popups");
        if (world_.duringAction)
            world_.duringAction();
    }
    static const Selector kChoose;

private:
    MenuWorld& world_;
};

constexpr Selector MenuWorld::Recorder::kChoose = makeSelector<&MenuWorld::Recorder::choose>("chooseWithSender:");

MenuWorld::MenuWorld(AssistiveTechnology listener)
    : top(std::make_shared<NSMenu>("top")),
      presenter(listener),
      recorder_(std::make_shared<Recorder>(*this))
{
    top->setDelegate(recorder_);
    presenter.onClosed = [this] { log.push_back("off the screen"); };
}

MenuWorld::~MenuWorld()
{
    presenter.onClosed = nullptr;
    presenter.close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

std::shared_ptr<NSMenuItem> MenuWorld::file(const std::string& title)
{
    auto item = std::make_shared<NSMenuItem>(title, &Recorder::kChoose);
    item->setTarget(recorder_);
    return item;
}

std::shared_ptr<NSMenuItem> MenuWorld::directory(const std::string& title)
{
    auto item = file(title);
    auto submenu = std::make_shared<NSMenu>(title);
    submenu->setDelegate(recorder_);
    item->setSubmenu(std::move(submenu));
    return item;
}

std::shared_ptr<NSMenuItem> MenuWorld::heading(const std::string& title)
{
    auto item = directory(title);
    item->setAction(nullptr);
    return item;
}

MenuWorld::Rows MenuWorld::files(const std::vector<std::string>& titles)
{
    Rows rows;
    for (const std::string& title : titles)
        rows.push_back(file(title));
    return rows;
}

MenuWorld::Rows MenuWorld::numbered(const std::string& name, int count)
{
    Rows rows;
    for (int i = 0; i < count; ++i)
        rows.push_back(file(name + std::to_string(i)));
    return rows;
}

std::string MenuWorld::takeLog()
{
    std::string text;
    for (const std::string& line : std::exchange(log, {}))
        text += (text.empty() ? "" : ", ") + line;
    return text;
}

} // namespace quillbox
