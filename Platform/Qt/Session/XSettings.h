#pragma once

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QMap>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace quillbox {

// The texts among the settings that desktops of the GTK family share with all programs on an X server (XSETTINGS), by
// the name of the setting ("Net/ThemeName"). It follows changes of the settings and of the program that manages them by
// events of the X server.
class XSettings final : private QAbstractNativeEventFilter {
public:
    // Returns null if the application has no X server.
    static std::unique_ptr<XSettings> create();
    ~XSettings() override;

    // Empty if no program manages settings.
    const QMap<QByteArray, QByteArray>& texts() const { return texts_; }

    // Called from the event loop when texts() has changed.
    std::function<void()> onChanged;

    // Returns the texts in the bytes of the property that holds the settings; of damaged bytes, those before the
    // damage.
    static QMap<QByteArray, QByteArray> parse(const QByteArray& bytes);

private:
    XSettings();
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void read();

    struct Server;
    std::unique_ptr<Server> server_;
    QMap<QByteArray, QByteArray> texts_;
    // Deferred calls are cancelled when this is destroyed.
    QObject context_;
};

} // namespace quillbox
