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

// A window of the application, or a sheet on one. It keeps itself alive from its creation until it is closed and the
// event that closed it has ended, so others should refer to it weakly. It keeps its content's controller. While a sheet
// is attached to a window, what the user or assistive technology does to that window has no effect. An open panel is
// such a sheet.
class NSWindow : public NSObject, public std::enable_shared_from_this<NSWindow> {
public:
    enum StyleMask : unsigned { titled = 1, closable = 2, miniaturizable = 4, resizable = 8 };

    // Makes a window as large as the controller's view.
    static std::shared_ptr<NSWindow> create(std::shared_ptr<NSViewController> contentViewController);
    // The windows that have not been closed, oldest first.
    static const std::vector<std::shared_ptr<NSWindow>>& windows();
    // Closes all windows when the application ends; sheets end with "cancel".
    static void closeAll();

    const std::shared_ptr<NSViewController>& contentViewController() const { return contentViewController_; }
    const std::shared_ptr<NSView>& contentView() const { return contentViewController_->view(); }

    const std::string& title() const { return title_; }
    void setTitle(std::string title);
    unsigned styleMask() const { return styleMask_; }
    void setStyleMask(unsigned mask) { styleMask_ = mask; }
    NSSize contentSize() const { return contentView()->frame().size; }
    // Sets the size, limited to the minimum and maximum. The display calls it when the user resizes the window.
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
    // Brings the window in front of all others, even if another program is active, and shows it if needed. A closed
    // window stays closed.
    void orderFrontRegardless();
    // Closes the window as its close button does: not while a sheet is on it.
    void performClose(NSObject* sender);
    void close();

    // Shows `sheet`, a separate window, on this one. `completion` is called when it has ended.
    void beginSheet(const std::shared_ptr<NSWindow>& sheet, std::function<void(NSModalResponse)> completion);
    // Closes the sheet; called on the window that the sheet is on.
    void endSheet(const std::shared_ptr<NSWindow>& sheet, NSModalResponse returnCode);
    // Returns the sheet or open panel on this window, or null.
    std::shared_ptr<NSWindow> attachedSheet() const { return sheet_.lock(); }
    std::shared_ptr<NSWindow> sheetParent() const { return sheetParent_.lock(); }

    // The view to which the program or the user last gave the keyboard focus; null if there is none.
    std::shared_ptr<NSView> firstResponder() const { return firstResponder_.lock(); }
    void makeFirstResponder(const std::shared_ptr<NSView>& view);
    // Counts the calls of makeFirstResponder(); the display compares it.
    unsigned firstResponderCount() const { return firstResponderCount_; }
    // The user gave the keyboard focus to another view; the display shows it already.
    void userFocuses(const std::shared_ptr<NSView>& view) { firstResponder_ = view; }

    // The changes made in this window that can be undone.
    NSUndoManager& undoManager() { return undoManager_; }

    // Settles all frames, repeatedly if the layout of one view changes what another one needs.
    void layoutIfNeeded();
    // Called by the views when they have to be shown anew.
    void setViewsNeedDisplay();

protected:
    explicit NSWindow(std::shared_ptr<NSViewController> contentViewController)
        : contentViewController_(std::move(contentViewController))
    {
    }
    // Makes this window the sheet of `parent`. The caller shows it.
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

// Shows a window, and is not kept after that.
class NSWindowController final {
public:
    explicit NSWindowController(std::shared_ptr<NSWindow> window) : window_(std::move(window)) { }
    void showWindow(NSObject*) { window_->orderFrontRegardless(); }

private:
    std::shared_ptr<NSWindow> window_;
};

} // namespace quillbox
