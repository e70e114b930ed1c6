#pragma once

#include "NSGeometry.h"
#include "NSUndoManager.h"
#include "NSViewController.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quillbox {

// How a sheet or a panel was answered.
using NSModalResponse = int;
inline constexpr NSModalResponse NSModalResponseCancel = 0;
inline constexpr NSModalResponse NSModalResponseOK = 1;

// A window of the application, or a sheet on one. It lives from its creation until it is closed, whoever refers to
// it, and then until the event that closed it has ended; refer to it weakly. It keeps its content's controller.
// While a sheet is attached to a window, that window is held: what the person or an assistive technology does to it
// has no effect. An open panel is such a sheet.
class NSWindow : public NSObject, public std::enable_shared_from_this<NSWindow> {
public:
    enum StyleMask : unsigned { titled = 1, closable = 2, miniaturizable = 4, resizable = 8 };

    // As large as the controller's view is.
    static std::shared_ptr<NSWindow> create(std::shared_ptr<NSViewController> contentViewController);
    // The windows that are not closed, oldest first.
    static const std::vector<std::shared_ptr<NSWindow>>& windows();
    // Closes all, sheets with "cancel"; when the application ends.
    static void closeAll();

    const std::shared_ptr<NSViewController>& contentViewController() const { return contentViewController_; }
    const std::shared_ptr<NSView>& contentView() const { return contentViewController_->view(); }

    const std::string& title() const { return title_; }
    void setTitle(std::string title);
    unsigned styleMask() const { return styleMask_; }
    void setStyleMask(unsigned mask) { styleMask_ = mask; }
    NSSize contentSize() const { return contentView()->frame().size; }
    // Cut down or up to the limits. The display calls it when the person resizes the window.
    void setContentSize(NSSize size);
    // As they were set, with the room that the content needs beyond the minimum, and no larger than the screen.
    NSSize contentMinSize() const { return shownMinimum_; }
    NSSize contentMaxSize() const { return shownMaximum_; }
    void setContentMinSize(NSSize size);
    void setContentMaxSize(NSSize size);
    // Settles both and brings the content between them; where it can't be resized, to the minimum. Called before the
    // window is first shown, and by the display when fonts or the screen have changed.
    void fitContent();

    bool isVisible() const { return isVisible_; }
    // In front of the other windows, whatever program is active; shows it if need be. A closed window stays closed.
    void orderFrontRegardless();
    // As if its close button had been pressed: refused while a sheet is on it.
    void performClose(NSObject* sender);
    void close();

    // Shows `sheet`, a window of its own, on this one. `completion` is called when it has ended.
    void beginSheet(const std::shared_ptr<NSWindow>& sheet, std::function<void(NSModalResponse)> completion);
    // Called on the window that the sheet is on; closes the sheet.
    void endSheet(const std::shared_ptr<NSWindow>& sheet, NSModalResponse returnCode);
    // The sheet or open panel that holds this window. Null where there is none.
    std::shared_ptr<NSWindow> attachedSheet() const { return sheet_.lock(); }
    std::shared_ptr<NSWindow> sheetParent() const { return sheetParent_.lock(); }

    // The view that has the keyboard, as far as the program has given it.
    std::shared_ptr<NSView> firstResponder() const { return firstResponder_.lock(); }
    void makeFirstResponder(const std::shared_ptr<NSView>& view);
    // Counts the calls, for the display.
    unsigned firstResponderCount() const { return firstResponderCount_; }
    // The person gave the keyboard to another view; the display shows it already.
    void userFocuses(const std::shared_ptr<NSView>& view) { firstResponder_ = view; }

    // The changes that were made in this window.
    NSUndoManager& undoManager() { return undoManager_; }

    // Settles all frames, also where laying out one view changes what another one wants.
    void layoutIfNeeded();
    // Called by the views.
    void setViewsNeedDisplay();

protected:
    explicit NSWindow(std::shared_ptr<NSViewController> contentViewController)
        : contentViewController_(std::move(contentViewController))
    {
    }
    // Makes this window the sheet of `parent`; showing it is the caller's.
    void attachTo(NSWindow& parent, std::function<void(NSModalResponse)> completion);

private:
    static constexpr double kNoLimit = 1e6;

    std::shared_ptr<NSViewController> contentViewController_;
    std::string title_;
    unsigned styleMask_ = titled | closable | miniaturizable | resizable;
    // As large as the view was made, until it is set.
    NSSize minimum_ { 0, 0 };
    NSSize maximum_ { kNoLimit, kNoLimit };
    NSSize shownMinimum_ = minimum_;
    NSSize shownMaximum_ = maximum_;
    bool isVisible_ = false;
    std::weak_ptr<NSWindow> sheet_;
    std::weak_ptr<NSWindow> sheetParent_;
    std::function<void(NSModalResponse)> sheetCompletion_;
    std::weak_ptr<NSView> firstResponder_;
    unsigned firstResponderCount_ = 0;
    NSUndoManager undoManager_;
};

// Shows a window; not kept once it has.
class NSWindowController final {
public:
    explicit NSWindowController(std::shared_ptr<NSWindow> window) : window_(std::move(window)) { }
    void showWindow(NSObject*) { window_->orderFrontRegardless(); }

private:
    std::shared_ptr<NSWindow> window_;
};

} // namespace quillbox
