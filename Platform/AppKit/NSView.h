#pragma once

#include "NSCursor.h"
#include "NSDragging.h"
#include "NSGeometry.h"
#include "NSLayoutConstraint.h"
#include "NSObject.h"

#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillbox {

class CALayer;
class NSWindow;

// A rectangle of a window and what is in it. A view holds its subviews, and refers upwards weakly. Nothing here draws:
// the display reads the views and shows them, and calls them when the user does something. Frames are in points in the
// superview's coordinates, with y downwards; the first subview is the lowest one.
class NSView : public NSObject, public std::enable_shared_from_this<NSView> {
public:
    NSView();
    ~NSView() override;

    // Shown in dumps.
    virtual const char* className() const { return "NSView"; }
    const std::string& identifier() const { return identifier_; }
    void setIdentifier(std::string identifier) { identifier_ = std::move(identifier); }

    // --- Hierarchy

    const std::vector<std::shared_ptr<NSView>>& subviews() const { return subviews_; }
    std::shared_ptr<NSView> superview() const { return superview_.lock(); }
    // Adds `view` on top of the others, after removing it from its superview.
    void addSubview(std::shared_ptr<NSView> view);
    // Adds `view` right above `sibling`, a subview of this view.
    void addSubviewAbove(std::shared_ptr<NSView> view, const NSView& sibling);
    // Also removes the constraints that refer to the view.
    void removeFromSuperview();
    // Returns null if the view is in no window.
    std::shared_ptr<NSWindow> window() const;
    // Whether a sheet on the window blocks the user's input to this view.
    bool isHeld() const;
    // Called by the window for its content view.
    void setWindow(std::weak_ptr<NSWindow> window) { window_ = std::move(window); }

    // --- Geometry

    NSRect frame() const { return frame_; }
    void setFrame(NSRect frame);
    void setFrameSize(NSSize size) { setFrame({ frame_.origin, size }); }
    NSRect bounds() const { return { boundsOrigin_, frame_.size }; }
    // Converts a rectangle of this view to the coordinates of `view`, which is in the same window.
    NSRect convert(NSRect rect, const NSView& view) const;
    // Returns the topmost visible view at a point in this view's coordinates; null outside of this view.
    std::shared_ptr<NSView> hitTest(NSPoint point);

    // --- Layout

    // If false, the frame follows from the constraints. If true, as for a new view, it stays as it was set.
    bool translatesAutoresizingMaskIntoConstraints() const { return translatesAutoresizingMask_; }
    void setTranslatesAutoresizingMaskIntoConstraints(bool translates);
    NSLayoutAnchor leftAnchor() { return { this, LayoutAttribute::left }; }
    NSLayoutAnchor rightAnchor() { return { this, LayoutAttribute::right }; }
    NSLayoutAnchor topAnchor() { return { this, LayoutAttribute::top }; }
    NSLayoutAnchor bottomAnchor() { return { this, LayoutAttribute::bottom }; }
    NSLayoutAnchor widthAnchor() { return { this, LayoutAttribute::width }; }
    NSLayoutAnchor heightAnchor() { return { this, LayoutAttribute::height }; }
    NSLayoutAnchor centerXAnchor() { return { this, LayoutAttribute::centerX }; }
    NSLayoutAnchor centerYAnchor() { return { this, LayoutAttribute::centerY }; }
    // The constraints among the subviews and between them and this view.
    const std::vector<NSLayoutConstraint>& constraints() const { return constraints_; }
    void addConstraint(const NSLayoutConstraint& constraint);

    // Returns the size that the content wants within a width, in points. A length below zero means that there is no
    // wish.
    virtual NSSize naturalSize(double widthLimit) const;
    // Returns what the view needs to be usable, whatever size it would like; 0 if it makes do with anything.
    virtual NSSize leastSize() const;
    // Returns the size that the constraints give this view if the given width or height is fixed.
    NSSize fittingSize(std::optional<double> width, std::optional<double> height) const;
    // Returns the smallest size, from `size` on, in which the subviews have room. It grows in width for what can't
    // wrap.
    NSSize roomySize(NSSize size) const;
    // Has the frames below this view laid out again before they are next shown.
    void setNeedsLayout();
    bool needsLayout() const { return needsLayout_; }
    void layoutIfNeeded();
    // Sets the frames of the subviews; this view's own frame is final by then.
    virtual void layout();
    // Scrolls the scroll views around this view until the rectangle shows, as far as there is room for it.
    void scrollRectToVisible(NSRect rect);
    // Does the same for the whole view. For a document, which scrolls by itself, it shows the scroll view around it.
    void scrollToVisible();

    // --- Showing

    bool isHidden() const { return isHidden_; }
    void setHidden(bool hidden);
    bool isHiddenOrHasHiddenAncestor() const;
    const std::string& toolTip() const { return toolTip_; }
    void setToolTip(std::string toolTip);
    // What assistive technology reads if the view shows no text of its own.
    const std::string& accessibilityLabel() const { return accessibilityLabel_; }
    void setAccessibilityLabel(std::string label);
    // Called when the content has changed. The display compares the count with the one that it has shown.
    void setNeedsDisplay();
    unsigned displayCount() const { return displayCount_; }
    // Null until a layer is set.
    CALayer* layer() const { return layer_.get(); }
    void setLayer(std::unique_ptr<CALayer> layer);

    // --- Cursor areas, made again whenever the display asks

    struct CursorRect {
        NSRect rect;
        NSCursor cursor;
    };
    const std::vector<CursorRect>& updatedCursorRects();

    // --- Dragging destination: called in the order of AppKit, see DragTracking

    const std::vector<std::string>& registeredDraggedTypes() const { return draggedTypes_; }
    void registerForDraggedTypes(std::vector<std::string> types) { draggedTypes_ = std::move(types); }
    virtual NSDragOperation draggingEntered(const NSDraggingInfo& info);
    // Returns what a drop would do now; nothing means that it is still what draggingEntered() returned.
    virtual std::optional<NSDragOperation> draggingUpdated(const NSDraggingInfo&) { return std::nullopt; }
    virtual void draggingExited() { }
    virtual bool prepareForDragOperation(const NSDraggingInfo&) { return true; }
    virtual bool performDragOperation(const NSDraggingInfo&) { return false; }
    virtual void concludeDragOperation() { }
    virtual void draggingEnded() { }

protected:
    // Called when the part of this view that a clip view shows has moved or changed its size.
    virtual void visibleRectDidChange() { }
    virtual void resetCursorRects() { }
    void addCursorRect(NSRect rect, NSCursor cursor) { cursorRects_.push_back({ rect, cursor }); }
    void setBoundsOrigin(NSPoint origin);
    // Called when something in the window has to be shown anew.
    void setWindowNeedsDisplay();
    // Called when the content wants another size.
    void naturalSizeDidChange();

private:
    friend class NSClipView;

    void insertSubview(std::size_t at, std::shared_ptr<NSView> view);
    void removeConstraintsOf(const NSView& view);

    std::string identifier_;
    std::vector<std::shared_ptr<NSView>> subviews_;
    std::weak_ptr<NSView> superview_;
    std::weak_ptr<NSWindow> window_;
    NSRect frame_;
    NSPoint boundsOrigin_;
    bool translatesAutoresizingMask_ = true;
    bool needsLayout_ = true;
    bool isHidden_ = false;
    std::vector<NSLayoutConstraint> constraints_;
    std::string toolTip_;
    std::string accessibilityLabel_;
    unsigned displayCount_ = 0;
    std::unique_ptr<CALayer> layer_;
    std::vector<CursorRect> cursorRects_;
    std::vector<std::string> draggedTypes_;
};

inline constexpr double kNoWidthLimit = std::numeric_limits<double>::infinity();
// The width or height of a natural size for which the content has no wish.
inline constexpr double kNoNaturalLength = -1;

} // namespace quillbox
