#pragma once

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QMap>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace quillbox {

// The texts among the settings that desktops of the GTK family share with all programs on an X server, by the name of
// the setting ("Net/ThemeName"). Follows them, and the program that manages them, by the X server's events.
class XSettings final : private QAbstractNativeEventFilter {
public:
    // Null where the application has no X server.
    static std::unique_ptr<XSettings> create();
    ~XSettings() override;

    // Empty where nobody manages settings.
    const QMap<QByteArray, QByteArray>& texts() const { return texts_; }

    // Called from the event loop when texts() has changed.
    std::function<void()> onChanged;

    // The texts in the bytes of the property that holds the settings; of damaged bytes, what comes before the damage.
    static QMap<QByteArray, QByteArray> parse(const QByteArray& bytes);

private:
    XSettings();
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void read();

    struct Server;
    std::unique_ptr<Server> server_;
    QMap<QByteArray, QByteArray> texts_;
    // Calls that wait in the event loop go with it.
    QObject context_;
};

} // namespace quillbox
