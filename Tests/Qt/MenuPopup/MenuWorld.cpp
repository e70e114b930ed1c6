#include "MenuWorld.h"

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
            menu.setItemArray(world_.rows(rows->second));
        if (world_.afterUpdate)
            world_.afterUpdate(menu);
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
    void show(NSMenuItem* item) { world_.log.push_back("showed " + *item->representedFile()); }
    std::shared_ptr<NSMenu> menuForItem(const std::shared_ptr<NSMenuItem>& item) override
    {
        auto menu = world_.menu("of " + item->title());
        menu->setItemArray(world_.rows("Open, Copy"));
        return menu;
    }
    static const Selector kChoose;
    static const Selector kShow;

private:
    MenuWorld& world_;
};

constexpr Selector MenuWorld::Recorder::kChoose = makeSelector<&MenuWorld::Recorder::choose>("chooseWithSender:");

constexpr Selector MenuWorld::Recorder::kShow = makeSelector<&MenuWorld::Recorder::show>("showWithSender:");

class MenuWorld::FileRow final : public NSMenuItem {
public:
    FileRow(const std::string& title, const std::string& directory)
        : NSMenuItem(title, &Recorder::kChoose),
          path_(directory + "/" + title)
    {
    }
    const Selector* alternateAction() const override { return &Recorder::kShow; }
    std::optional<std::string> representedFile() const override { return path_; }

private:
    std::string path_;
};

MenuWorld::MenuWorld(Contents rowsByTitle, AssistiveTechnology listener)
    : contents(std::move(rowsByTitle)),
      top(std::make_shared<NSMenu>("top")),
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

std::shared_ptr<NSMenu> MenuWorld::menu(const std::string& title)
{
    auto made = std::make_shared<NSMenu>(title);
    made->setDelegate(recorder_);
    return made;
}

std::shared_ptr<NSMenuItem> MenuWorld::row(std::string text)
{
    if (text == "-")
        return NSMenuItem::separatorItem();
    if (text.front() == '(')
        return std::make_shared<NSMenuItem>(text.substr(1, text.size() - 2));
    const bool hasAction = !text.ends_with("//");
    const bool hasSubmenu = text.ends_with('/');
    text.resize(text.find_last_not_of('/') + 1);
    auto item = text.front() == '@' ? std::make_shared<FileRow>(text.substr(1), directory)
                                    : std::make_shared<NSMenuItem>(text, hasAction ? &Recorder::kChoose : nullptr);
    item->setTarget(recorder_);
    if (hasSubmenu)
        item->setSubmenu(menu(text));
    return item;
}

NSMenu::ItemArray MenuWorld::rows(const std::string& text)
{
    NSMenu::ItemArray rows;
    for (const QString& part : QString::fromStdString(text).split(QStringLiteral(", "), Qt::SkipEmptyParts)) {
        const std::string name = part.section(u'*', 0, 0).toStdString();
        const int count = part.section(u'*', 1).toInt();
        if (count == 0)
            rows.push_back(row(name));
        for (int i = 0; i < count; ++i)
            rows.push_back(row(name + std::to_string(i)));
    }
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
