#pragma once

#include "HeadlessDesktop.h"
#include "ManualClock.h"
#include "MenuPresenter.h"
#include "NSMenu.h"
#include "PopupUser.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace quillbox {

// A menu tree with a delegate and a target that write down what they are told, and the presenter that shows
// it, with a clock moved by hand. A submenu's rows come from what the test says for its title.
class MenuWorld {
public:
    using Rows = NSMenu::ItemArray;

    explicit MenuWorld(AssistiveTechnology listener = {});
    ~MenuWorld();
    MenuWorld(const MenuWorld&) = delete;
    MenuWorld& operator=(const MenuWorld&) = delete;

    // A row with an action; with a submenu too where `contents` knows its title.
    std::shared_ptr<NSMenuItem> file(const std::string& title);
    std::shared_ptr<NSMenuItem> directory(const std::string& title);
    // A row that can be opened only.
    std::shared_ptr<NSMenuItem> heading(const std::string& title);
    Rows files(const std::vector<std::string>& titles);
    Rows numbered(const std::string& name, int count);

    bool open() { return presenter.popUp(top, kAnchor, nullptr); }
    void wait(int milliseconds) { clock.advance(std::chrono::milliseconds(milliseconds)); }
    // Long enough for any hover.
    void rest() { wait(1000); }
    std::string takeLog();

    static constexpr QRect kAnchor { 300, 0, 24, 24 };

    ManualClock clock;
    HeadlessDesktop desktop;
    std::map<std::string, std::function<Rows()>> contents;
    std::vector<std::string> log;
    // Runs inside an action.
    std::function<void()> duringAction;
    std::shared_ptr<NSMenu> top;
    MenuPresenter presenter;

private:
    class Recorder;
    std::shared_ptr<Recorder> recorder_;
};

} // namespace quillbox
