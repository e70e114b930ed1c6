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

// The icon in the older tray of an X server: a window of ours that the owner of the tray's selection takes
// into its panel. Follows owners as they come and go, by the X server's events. Used on X11 only.
class TrayIcon final : private QAbstractNativeEventFilter {
public:
    // Null where the application has no X server.
    static std::unique_ptr<TrayIcon> create(const StatusIcon& icon);
    ~TrayIcon() override;

    // Whether some program offers a tray, and whether the icon is in it.
    bool isPresent() const { return owner_ != 0; }
    bool isDocked() const { return isDocked_; }
    // While wanted, the icon goes into every tray that comes.
    bool isWanted() const { return isWanted_; }
    void setWanted(bool isWanted);

    // The corner of the docked icon on the screen, in device pixels, and its size in logical ones. None where the icon
    // is not in a tray.
    std::optional<std::pair<QPoint, QSize>> place() const;

    // Called from the event loop when isPresent() or isDocked() may have changed.
    std::function<void()> onChanged;
    // A click with the button and the icon's rectangle (global logical pixels).
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
    // The selection owner's window, 0 for none.
    quint32 owner_ = 0;
    bool isWanted_ = false;
    bool isDocked_ = false;
    // Calls that wait in the event loop go with it.
    QObject context_;
};

} // namespace quillbox
