#pragma once

#include "Installed.h"
#include "NSButton.h"
#include "NSScrollView.h"
#include "NSTableView.h"
#include "NSTextField.h"
#include "NSWindow.h"
#include "QtDesktop.h"

#include "ManualClock.h"

#include <QPushButton>
#include <QWidget>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quillbox {

// One window of the model on the real display: a field that can be edited, a checkbox, a table with any number of
// rows, and two buttons, one for Return and one for Escape. It writes down what the controls and the table say.
class WindowWorld {
public:
    explicit WindowWorld(int rowCount = 8);
    ~WindowWorld();
    WindowWorld(const WindowWorld&) = delete;
    WindowWorld& operator=(const WindowWorld&) = delete;

    // Shows what has changed, and lets go of what is to be deleted later.
    static void settle();
    std::string takeLog();
    // Null once the window is closed.
    QWidget* widget() const;
    // The first such widget, null where there is none.
    template <class Widget>
    static Widget* findIn(const QWidget& around);
    template <class Widget>
    Widget* find() const
    {
        return findIn<Widget>(*widget());
    }
    QPushButton* button(const QString& title) const;
    static void key(QWidget& window, int key, const QString& text = {});
    static void click(QWidget& widget);
    // A sheet with its own buttons for Return and Escape, and begun on the window.
    std::shared_ptr<NSWindow> beginSheet();

    static constexpr double kWidth = 300;
    static constexpr double kHeight = 400;

    ManualClock clock;
    QtDesktop desktop;
    std::vector<std::string> log;
    std::shared_ptr<NSTextField> field;
    std::shared_ptr<NSButton> checkbox;
    std::shared_ptr<NSTableView> table;
    std::shared_ptr<NSScrollView> scrollView;
    std::weak_ptr<NSWindow> window;
    // Runs inside the action of the button for Return.
    std::function<void()> duringAction;

private:
    class Recorder;
    const Installed<Desktop> installed_ { desktop };
    void addButton(const std::string& title, const std::string& key, NSView& in, double y);

    std::shared_ptr<Recorder> recorder_;
};

template <class Widget>
Widget* WindowWorld::findIn(const QWidget& around)
{
    for (QWidget* below : around.findChildren<QWidget*>()) {
        if (auto* wanted = dynamic_cast<Widget*>(below))
            return wanted;
    }
    return nullptr;
}

} // namespace quillbox
