#pragma once

#include "StatusIcon.h"

#include <QRect>
#include <QWidget>

#include <functional>

class QToolButton;

namespace quillbox {

// A small window with the icon, for desktops that have no status bar: at the upper right edge of the
// screen and above other windows where windows can be placed, an ordinary window elsewhere. The person may close it;
// whoever owns it shows it again.
class StatusStrip final : public QWidget {
public:
    explicit StatusStrip(const StatusIcon& icon);

    // Of the icon, in global logical pixels.
    QRect iconRect() const;
    // A click with the button and the icon's rectangle (global logical pixels).
    std::function<void(Qt::MouseButton, QRect)> onClick;
    // Calls `action` once with the icon's rectangle, from the event loop, as soon as it is on the screen.
    void whenDrawn(std::function<void(QRect)> action);

protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void drawIcon();
    void moveToEdge();

    StatusIcon icon_;
    QToolButton* button_;
    std::function<void(QRect)> whenDrawn_;
};

} // namespace quillbox
