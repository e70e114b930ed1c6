#pragma once

#include "StatusIcon.h"

#include <QRect>
#include <QWidget>

#include <functional>

class QToolButton;

namespace quillbox {

// A small window with the icon, for desktops that have no status bar: at the upper right edge of the
// screen and above other windows where windows can be placed, an ordinary window elsewhere.
class StatusStrip final : public QWidget {
public:
    explicit StatusStrip(const StatusIcon& icon);

    // A click with the button and the icon's rectangle (global logical pixels).
    std::function<void(Qt::MouseButton, QRect)> onClick;

protected:
    void showEvent(QShowEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QRect iconRect() const;
    void drawIcon();
    void moveToEdge();

    StatusIcon icon_;
    QToolButton* button_;
};

} // namespace quillbox
