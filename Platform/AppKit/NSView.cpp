#include "NSView.h"

#include "CALayer.h"
#include "LayoutSolver.h"
#include "NSScrollView.h"
#include "NSWindow.h"

#include <algorithm>

namespace quillbox {

NSView::NSView() = default;
NSView::~NSView() = default;

// Hierarchy

void NSView::addSubview(std::shared_ptr<NSView> view)
{
    view->removeFromSuperview();
    insertSubview(subviews_.size(), std::move(view));
}

void NSView::addSubviewAbove(std::shared_ptr<NSView> view, const NSView& sibling)
{
    view->removeFromSuperview();
    const auto place = std::find_if(subviews_.begin(), subviews_.end(),
                                    [&](const auto& subview) { return subview.get() == &sibling; });
    QB_CHECK(place != subviews_.end());
    insertSubview(static_cast<std::size_t>(place - subviews_.begin()) + 1, std::move(view));
}

void NSView::insertSubview(std::size_t at, std::shared_ptr<NSView> view)
{
    view->superview_ = weak_from_this();
    subviews_.insert(subviews_.begin() + static_cast<std::ptrdiff_t>(at), std::move(view));
    setNeedsLayout();
    setWindowNeedsDisplay();
}

void NSView::removeFromSuperview()
{
    const std::shared_ptr<NSView> parent = superview();
    if (!parent)
        return;
    const std::shared_ptr<NSView> held = shared_from_this();
    parent->removeConstraintsOf(*this);
    std::erase(parent->subviews_, held);
    superview_.reset();
    parent->setNeedsLayout();
    parent->setWindowNeedsDisplay();
}

void NSView::removeConstraintsOf(const NSView& view)
{
    std::erase_if(constraints_, [&](const NSLayoutConstraint& constraint) {
        return constraint.first().view == &view || constraint.second().view == &view;
    });
}

std::shared_ptr<NSWindow> NSView::window() const
{
    const NSView* topmost = this;
    std::shared_ptr<NSView> held;
    while (auto above = topmost->superview()) {
        held = std::move(above);
        topmost = held.get();
    }
    return topmost->window_.lock();
}

bool NSView::isHeld() const
{
    const auto shownIn = window();
    return shownIn && shownIn->attachedSheet();
}

// Geometry

void NSView::setFrame(NSRect frame)
{
    if (frame == frame_)
        return;
    const bool isResized = !(frame.size == frame_.size);
    frame_ = frame;
    if (isResized)
        setNeedsLayout();
    setWindowNeedsDisplay();
}

void NSView::setBoundsOrigin(NSPoint origin)
{
    if (origin == boundsOrigin_)
        return;
    boundsOrigin_ = origin;
    setWindowNeedsDisplay();
}

NSRect NSView::convert(NSRect rect, const NSView& view) const
{
    const auto originInWindow = [](const NSView& of) {
        NSPoint origin { -of.boundsOrigin_.x, -of.boundsOrigin_.y };
        std::shared_ptr<NSView> held;
        for (const NSView* each = &of; each; each = held.get()) {
            origin.x += each->frame_.origin.x;
            origin.y += each->frame_.origin.y;
            held = each->superview();
            if (held) {
                origin.x -= held->boundsOrigin_.x;
                origin.y -= held->boundsOrigin_.y;
            }
        }
        return origin;
    };
    const NSPoint from = originInWindow(*this);
    const NSPoint to = originInWindow(view);
    return { { rect.origin.x + from.x - to.x, rect.origin.y + from.y - to.y }, rect.size };
}

std::shared_ptr<NSView> NSView::hitTest(NSPoint point)
{
    if (isHidden_ || !bounds().contains(point))
        return nullptr;
    for (auto subview = subviews_.rbegin(); subview != subviews_.rend(); ++subview) {
        const NSView& below = **subview;
        const NSPoint inside { point.x - below.frame_.origin.x + below.boundsOrigin_.x,
                               point.y - below.frame_.origin.y + below.boundsOrigin_.y };
        if (auto hit = (*subview)->hitTest(inside))
            return hit;
    }
    return shared_from_this();
}

// Layout

void NSView::setTranslatesAutoresizingMaskIntoConstraints(bool translates)
{
    translatesAutoresizingMask_ = translates;
    if (const auto parent = superview())
        parent->setNeedsLayout();
}

void NSView::addConstraint(const NSLayoutConstraint& constraint)
{
    constraints_.push_back(constraint);
    setNeedsLayout();
    if (const auto parent = superview(); parent && !constraint.second().view)
        parent->setNeedsLayout();
}

NSSize NSView::naturalSize(double) const
{
    return { kNoNaturalLength, kNoNaturalLength };
}

namespace {

    LayoutProblem layoutProblem(const NSView& container, std::optional<double> width, std::optional<double> height)
    {
        LayoutProblem problem;
        problem.container = &container;
        problem.containerWidth = width;
        problem.containerHeight = height;
        problem.constraints = container.constraints();
        problem.items.reserve(container.subviews().size());
        for (const auto& view : container.subviews()) {
            LayoutProblem::Item item;
            item.view = view.get();
            if (view->translatesAutoresizingMaskIntoConstraints()) {
                item.fixedFrame = view->frame();
            } else {
                item.naturalSize = [&view = *view](double widthLimit) { return view.naturalSize(widthLimit); };
                item.leastSize = [&view = *view] { return view.leastSize(); };
                item.isScrolling = dynamic_cast<const NSScrollView*>(view.get()) != nullptr;
            }
            problem.items.push_back(std::move(item));
            for (const NSLayoutConstraint& constraint : view->constraints()) {
                if (constraint.first().view == view.get() && !constraint.second().view)
                    problem.constraints.push_back(constraint);
            }
        }
        return problem;
    }

} // namespace

NSSize NSView::leastSize() const
{
    if (constraints_.empty())
        return {};
    return { leastContainerWidth(layoutProblem(*this, std::nullopt, std::nullopt), 0), 0 };
}

NSSize NSView::fittingSize(std::optional<double> width, std::optional<double> height) const
{
    return solveLayout(layoutProblem(*this, width, height)).containerSize;
}

NSSize NSView::roomySize(NSSize size) const
{
    const double width = leastContainerWidth(layoutProblem(*this, std::nullopt, std::nullopt), size.width);
    return { width, std::max(size.height, fittingSize(width, std::nullopt).height) };
}

void NSView::setNeedsLayout()
{
    needsLayout_ = true;
    for (auto parent = superview(); parent && !parent->needsLayout_; parent = parent->superview())
        parent->needsLayout_ = true;
    setWindowNeedsDisplay();
}

void NSView::layoutIfNeeded()
{
    if (!needsLayout_)
        return;
    layout();
    needsLayout_ = false;
    // The subviews are kept alive, because laying out may remove views.
    const auto views = subviews_;
    for (const auto& view : views)
        view->layoutIfNeeded();
}

void NSView::layout()
{
    if (subviews_.empty())
        return;
    const LayoutSolution solution = solveLayout(layoutProblem(*this, frame_.size.width, frame_.size.height));
    for (std::size_t index = 0; index < subviews_.size(); ++index)
        subviews_[index]->setFrame(solution.frames[index]);
}

void NSView::scrollRectToVisible(NSRect rect)
{
    const NSView* in = this;
    std::shared_ptr<NSView> held;
    while (const auto above = in->superview()) {
        if (auto* clip = dynamic_cast<NSClipView*>(above.get())) {
            clip->scrollToVisible(in->convert(rect, *clip->documentView()));
            rect = in->convert(rect, *clip).intersection(clip->bounds());
        } else {
            rect = in->convert(rect, *above);
        }
        held = above;
        in = held.get();
    }
}

void NSView::scrollToVisible()
{
    const auto clip = std::dynamic_pointer_cast<NSClipView>(superview());
    NSView& shown = clip && clip->superview() ? *clip->superview() : *this;
    shown.scrollRectToVisible(shown.bounds());
}

// Showing

void NSView::setHidden(bool hidden)
{
    if (hidden == isHidden_)
        return;
    isHidden_ = hidden;
    setWindowNeedsDisplay();
}

bool NSView::isHiddenOrHasHiddenAncestor() const
{
    const auto parent = superview();
    return isHidden_ || (parent && parent->isHiddenOrHasHiddenAncestor());
}

void NSView::setToolTip(std::string toolTip)
{
    toolTip_ = std::move(toolTip);
    setNeedsDisplay();
}

void NSView::setAccessibilityLabel(std::string label)
{
    accessibilityLabel_ = std::move(label);
    setNeedsDisplay();
}

void NSView::setNeedsDisplay()
{
    ++displayCount_;
    setWindowNeedsDisplay();
}

void NSView::setWindowNeedsDisplay()
{
    if (const auto shownIn = window())
        shownIn->setViewsNeedDisplay();
}

void NSView::naturalSizeDidChange()
{
    if (const auto parent = superview())
        parent->setNeedsLayout();
    setNeedsDisplay();
}

void NSView::setLayer(std::unique_ptr<CALayer> layer)
{
    layer_ = std::move(layer);
    if (layer_)
        layer_->setDisplayHandler([this] { setNeedsDisplay(); });
    setNeedsDisplay();
}

const std::vector<NSView::CursorRect>& NSView::updatedCursorRects()
{
    cursorRects_.clear();
    resetCursorRects();
    return cursorRects_;
}

// Dragging

NSDragOperation NSView::draggingEntered(const NSDraggingInfo&)
{
    return NSDragOperation::none;
}

} // namespace quillbox
