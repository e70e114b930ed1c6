#pragma once

#include "StatusIcon.h"

#include <QRect>
#include <QWidget>

#include <functional>

class QToolButton;

namespace quillbox {

// A small window with the icon, for desktops without a status bar. If windows can be placed, it is at the upper right
// edge of the screen and above other windows; otherwise it is an ordinary window. The user may close it; its owner
// shows it again.
class StatusStrip final : public QWidget {
public:
    explicit StatusStrip(const StatusIcon& icon);

    // Returns the icon's rectangle, in global logical pixels.
    QRect iconRect() const;
    // Called on a click, with the button and the icon's rectangle (in global logical pixels).
    std::function<void(Qt::MouseButton, QRect)> onClick;
    // Calls `action` once from the event loop, with the icon's rectangle, as soon as the strip is on the screen.
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
