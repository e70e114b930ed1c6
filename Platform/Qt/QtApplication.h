#pragma once

#include <QApplication>

namespace quillbox {

// The toolkit's application. Whatever the toolkit delivers on the main thread is one event of NSApplication: input,
// timers, calls over the bus, calls that were put off.
class QtApplication final : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override;
};

} // namespace quillbox
