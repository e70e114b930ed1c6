#pragma once

#include "NSView.h"

namespace quillbox {

// Shows a part of a document view that may be higher than itself. The document's constraints to its clip view refer to
// the whole area of the document, however far it is scrolled.
class NSClipView final : public NSView {
public:
    const char* className() const override { return "NSClipView"; }
    void layout() override;

    const std::shared_ptr<NSView>& documentView() const { return documentView_; }
    void setDocumentView(std::shared_ptr<NSView> view);
    // Scrolls to this offset in the document's coordinates, limited to what can be reached.
    void scroll(double toY);
    // Scrolls just as far as needed to show the rectangle of the document. If the rectangle is too high, its top is
    // shown, unless it fills the clip view already.
    void scrollToVisible(NSRect rect);
    // Returns the largest offset that it can be scrolled to, in points.
    double maximumScroll() const;
    // Returns how high the document is in a clip view of that width, in points.
    double documentHeight(double width) const;

private:
    std::shared_ptr<NSView> documentView_;
};

// A clip view with a border and a scroller.
class NSScrollView final : public NSView {
public:
    enum class BorderType { noBorder = 0, lineBorder = 1, bezelBorder = 2 };
    enum class ControlSize { regular = 0, small = 1 };

    // The constructor is for create(), which everyone else uses.
    NSScrollView() = default;
    static std::shared_ptr<NSScrollView> create();

    const char* className() const override { return "NSScrollView"; }
    void layout() override;
    NSSize naturalSize(double widthLimit) const override;
    NSSize leastSize() const override;

    const std::shared_ptr<NSClipView>& contentView() const { return contentView_; }
    void setDocumentView(std::shared_ptr<NSView> view) { contentView_->setDocumentView(std::move(view)); }

    BorderType borderType() const { return borderType_; }
    void setBorderType(BorderType type);
    bool drawsBackground() const { return drawsBackground_; }
    void setDrawsBackground(bool draws);
    bool hasVerticalScroller() const { return hasVerticalScroller_; }
    void setHasVerticalScroller(bool has);
    ControlSize verticalScrollerControlSize() const { return scrollerSize_; }
    void setVerticalScrollerControlSize(ControlSize size);
    // Meant for contents that mostly have room. The scroller is there only while there is something to scroll, and the
    // scroll view wants to be as large as its document.
    bool autohidesScrollers() const { return autohidesScrollers_; }
    void setAutohidesScrollers(bool autohides);
    // Says whether the last layout had room for a scroller and a need of it.
    bool showsVerticalScroller() const { return hasVerticalScroller_ && (!autohidesScrollers_ || isScrollable_); }
    // Returns the scroller's frame; its width is 0 if there is no scroller.
    NSRect verticalScrollerFrame() const;

private:
    double border() const;
    NSRect insideBorder() const;

    std::shared_ptr<NSClipView> contentView_;
    BorderType borderType_ = BorderType::noBorder;
    bool drawsBackground_ = true;
    bool hasVerticalScroller_ = false;
    bool autohidesScrollers_ = false;
    bool isScrollable_ = false;
    ControlSize scrollerSize_ = ControlSize::regular;
};

} // namespace quillbox
