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

// Shows one window or sheet: the top-level widget with the views' widgets in it. Changes of the model are shown
// all together, before the next wait for events. What the window as a whole takes is here: its size, the close
// button, Return and Escape, the keyboard's way through the controls, drags, changes of the theme. Made and kept by
// QtWindowDisplay until the window is closed; it is deleted only after the event that closed it.
class WindowPresenter final : public QWidget {
public:
    // `lookChanged` is called when the style, the fonts or the colours have changed, before the views are laid out
    // again. A sheet has the window that it is on as its parent.
    WindowPresenter(NSWindow& window, WindowPresenter* parent, std::function<void()> lookChanged);
    ~WindowPresenter() override;

    // Shows it where it is not shown, and brings it to the front.
    void orderFront();
    void setNeedsDisplay();
    // Takes no input until sheetEnded(); the sheet does.
    void holdFor(WindowPresenter& sheet);
    void sheetEnded();
    // Off the screen, and deleted later.
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
    // The keyboard goes where the model says, if it says so newly or if what had the keyboard is gone.
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
    // Owned by this widget; while a sheet is on the window.
    QPointer<SheetShield> shield_;
    bool isDisplayPosted_ = false;
    bool isPlaced_ = false;
    // What the screen had for the content.
    QSize room_;
    // While the widgets become what the views are: where the keyboard goes meanwhile is nobody's choice.
    bool isShowing_ = false;
    unsigned shownFirstResponder_ = 0;
};

} // namespace quillbox
