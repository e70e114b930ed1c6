#include "RowMenu.h"

#include "Desktop.h"
#include "MenuGraphics.h"
#include "MenuRows.h"
#include "NSApplication.h"
#include "NSWorkspace.h"
#include "Unicode.h"

#include <utility>

namespace quillbox {

// A row of "Open With".
class RowMenu::ApplicationItem final : public NSMenuItem {
public:
    ApplicationItem(NSWorkspace::Application application, const Selector& action)
        : NSMenuItem(application.name, &action),
          application_(std::move(application))
    {
        NSImage icon = application_.icon;
        icon.setSize(menuIconSize);
        setImage(std::move(icon));
    }
    const NSWorkspace::Application& application() const { return application_; }

private:
    NSWorkspace::Application application_;
};

RowMenu::RowMenu(std::shared_ptr<NSMenuItem> row) : row_(std::move(row)) { }

std::shared_ptr<NSMenu> RowMenu::menu(const std::shared_ptr<RowMenu>& target)
{
    static const Selector open = makeSelector<&RowMenu::openTheRow>("openTheRowWithSender:");
    static const Selector show = makeSelector<&RowMenu::showTheRow>("showTheRowWithSender:");
    static const Selector copy = makeSelector<&RowMenu::copyThePath>("copyThePathWithSender:");
    target->self_ = target;
    auto result = std::make_shared<NSMenu>(target->row_->title());
    const auto add = [&](const char* title, const Selector* action) {
        auto item = std::make_shared<NSMenuItem>(title, action);
        item->setTarget(target);
        result->addItem(item);
        return item;
    };
    add("Open", &open);
    // An application's package is started; no other application opens it.
    if (!NSWorkspace::sharedWorkspace().isFilePackage(*target->row_->representedFile())) {
        auto applications = std::make_shared<NSMenu>("Open With");
        applications->setDelegate(target);
        add("Open With", nullptr)->setSubmenu(std::move(applications));
    }
    result->addItem(NSMenuItem::separatorItem());
    add("Show in File Manager", &show);
    add("Copy Path", &copy);
    return result;
}

void RowMenu::menuNeedsUpdate(NSMenu& openWithMenu)
{
    static const Selector openWith =
        makeSelector<&RowMenu::openWithTheApplication>("openWithTheApplicationWithSender:");
    auto known = NSWorkspace::sharedWorkspace().applications(URL::fileURLWithPath(*row_->representedFile()));
    ItemList rows;
    for (NSWorkspace::Application& application : known ? *known : std::vector<NSWorkspace::Application>()) {
        rows.push_back(std::make_shared<ApplicationItem>(std::move(application), openWith));
        rows.back()->setTarget(self_);
    }
    if (rows.empty())
        rows.push_back(textRow(known ? "No Application Found" : unicode::displayText(known.error().description())));
    openWithMenu.setItemArray(std::move(rows));
}

void RowMenu::openTheRow(NSObject*)
{
    NSApplication::shared().sendAction(row_->action(), row_->target(), row_);
}

void RowMenu::openWithTheApplication(ApplicationItem* sender)
{
    QB_CHECK(sender);
    NSWorkspace::sharedWorkspace().open(URL::fileURLWithPath(*row_->representedFile()), sender->application());
}

void RowMenu::showTheRow(NSObject*)
{
    NSApplication::shared().sendAction(row_->alternateAction(), row_->target(), row_);
}

void RowMenu::copyThePath(NSObject*)
{
    const std::string path = NSWorkspace::sharedWorkspace().fileBehind(*row_->representedFile());
    // Bytes that are no text would not survive the clipboard; a URL keeps them.
    NSApplication::shared().desktop().copyText(
        unicode::isValidUTF8(path) ? path : URL::fileURLWithPath(path).absoluteString());
}

} // namespace quillbox
