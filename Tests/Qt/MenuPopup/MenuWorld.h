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
// it, with a clock moved by hand. The rows of each menu come, whenever it is updated, from what the test says for its
// title: "alpha, Papers/, Recent//, -, (off), n*30" is a row with an action; one with an action and a submenu; one
// that can be opened only; a separator; one that can't be used; and rows from n0 to n29. "@notes" is a row of a
// file, with a menu of what can be done with it.
class MenuWorld {
public:
    using Contents = std::map<std::string, std::string>;

    explicit MenuWorld(Contents rowsByTitle = {}, AssistiveTechnology listener = {});
    ~MenuWorld();
    MenuWorld(const MenuWorld&) = delete;
    MenuWorld& operator=(const MenuWorld&) = delete;

    std::shared_ptr<NSMenu> menu(const std::string& title);
    NSMenu::ItemArray rows(const std::string& text);

    bool open() { return presenter.popUp(top, kAnchor, nullptr); }
    void wait(int milliseconds) { clock.advance(std::chrono::milliseconds(milliseconds)); }
    // Long enough for any hover.
    void rest() { wait(1000); }
    void hover(const std::string& title)
    {
        PopupUser::moveTo(title);
        rest();
    }
    std::string takeLog();

    static constexpr QRect kAnchor { 300, 0, 24, 24 };

    ManualClock clock;
    HeadlessDesktop desktop;
    Contents contents;
    // Gives rows what their text does not say.
    std::function<void(NSMenu&)> afterUpdate;
    std::vector<std::string> log;
    // The directory of files that rows stand for.
    std::string directory = "/files";
    // Runs inside an action.
    std::function<void()> duringAction;
    std::shared_ptr<NSMenu> top;
    MenuPresenter presenter;

private:
    class Recorder;
    class FileRow;
    std::shared_ptr<NSMenuItem> row(std::string text);

    std::shared_ptr<Recorder> recorder_;
};

} // namespace quillbox
