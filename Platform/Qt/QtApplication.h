#pragma once

#include <QApplication>

namespace quillbox {

// The toolkit's application. Everything that the toolkit delivers on the main thread is one event of NSApplication:
// input, timers, calls over the bus, and deferred calls.
class QtApplication final : public QApplication {
public:
    // In a session of a language that is written from right to left, menus go that way.
    QtApplication(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;
};

} // namespace quillbox
