#pragma once

#include "DragDestination.h"
#include "NSWindow.h"
#include "ViewPresenter.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>

namespace quillbox {

class SheetShield;

// Shows one window or sheet: it is the top-level widget with the views' widgets in it. All changes of the model are
// shown together, before the program next waits for events. Everything that concerns the window as a whole is here: its
// size, the close button, Return and Escape, the order of keyboard focus, drags, and changes of the theme.
// QtWindowDisplay makes it and keeps it until the window is closed; it is deleted only after the event that closed the
// window.
class WindowPresenter final : public QWidget {
public:
    // `lookChanged` is called when the style, the fonts or the colours have changed, before the views are laid out
    // again. The parent of a sheet is the window that it is on.
    WindowPresenter(NSWindow& window, WindowPresenter* parent, std::function<void()> lookChanged);
    ~WindowPresenter() override;

    // Shows the window if it is not shown, and brings it to the front.
    void orderFront();
    void setNeedsDisplay();
    // Takes no input until sheetEnded(); the sheet takes it instead.
    void holdFor(WindowPresenter& sheet);
    void sheetEnded();
    // Takes the window off the screen, and deletes it later.
    void retire();

    bool event(QEvent* event) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    // It may be on another screen now, or have got its frame.
    void moveEvent(QMoveEvent*) override { followScreen(); }
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void display();
    void showFrame(const NSWindow& window);
    // Moves the keyboard focus to where the model says, if the model has changed it or if the widget with the focus is
    // gone.
    void showFirstResponder(NSWindow& window, bool isLost);
    void focusFirst();
    void placeFirst(const NSWindow& window);
    void focusChanged(QWidget* now);
    void layOutAnew();
    // Fits into the room that the screen has now.
    void followScreen();

    std::weak_ptr<NSWindow> window_;
    std::function<void()> lookChanged_;
    std::unique_ptr<ViewPresenter> content_;
    DragDestination dragDestination_;
    // Set while a sheet is on the window. This widget owns it.
    QPointer<SheetShield> shield_;
    bool isDisplayPosted_ = false;
    bool isPlaced_ = false;
    // The room that the screen had for the content when the window was last fitted to it.
    QSize room_;
    // True while the widgets become what the views are; where the keyboard focus goes meanwhile is nobody's choice.
    bool isShowing_ = false;
    unsigned shownFirstResponder_ = 0;
};

} // namespace quillbox
