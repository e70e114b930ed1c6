#pragma once

#include "StatusIcon.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QRect>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace quillbox {

class TrayWindow;
struct TrayProtocol;

// The icon in the older tray of an X server: a window of ours that the owner of the tray's selection takes into its
// panel. It follows owners as they come and go by events of the X server. It is used on X11 only.
class TrayIcon final : private QAbstractNativeEventFilter {
public:
    // Returns null if the application has no X server.
    static std::unique_ptr<TrayIcon> create(const StatusIcon& icon);
    ~TrayIcon() override;

    // Whether some program offers a tray, and whether the icon is in it.
    bool isPresent() const { return owner_ != 0; }
    bool isDocked() const { return isDocked_; }
    // While it is wanted, the icon goes into every tray that appears.
    bool isWanted() const { return isWanted_; }
    void setWanted(bool isWanted);

    // Returns the upper left corner of the docked icon on the screen, in device pixels, and its size in logical pixels;
    // nothing if the icon is not in a tray.
    std::optional<std::pair<QPoint, QSize>> place() const;

    // Called from the event loop when isPresent() or isDocked() may have changed.
    std::function<void()> onChanged;
    // Called on a click, with the button and the icon's rectangle (in global logical pixels).
    std::function<void(Qt::MouseButton, QRect)> onClick;

private:
    TrayIcon(const StatusIcon& icon, std::unique_ptr<TrayProtocol> protocol);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void findOwner();
    void dock();
    void later(std::function<void()> action);

    StatusIcon icon_;
    std::unique_ptr<TrayProtocol> protocol_;
    std::unique_ptr<TrayWindow> window_;
    // The window of the selection's owner, or 0.
    quint32 owner_ = 0;
    bool isWanted_ = false;
    bool isDocked_ = false;
    // Deferred calls are cancelled when this is destroyed.
    QObject context_;
};

} // namespace quillbox
