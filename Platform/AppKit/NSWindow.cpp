#include "NSWindow.h"

#include "Desktop.h"
#include "NSApplication.h"
#include "WindowDisplay.h"

#include <algorithm>

namespace quillbox {

namespace {

    std::vector<std::shared_ptr<NSWindow>>& openWindows()
    {
        static std::vector<std::shared_ptr<NSWindow>> list;
        return list;
    }

    WindowDisplay& display()
    {
        return NSApplication::shared().desktop().windows();
    }

} // namespace

std::shared_ptr<NSWindow> NSWindow::create(std::shared_ptr<NSViewController> contentViewController)
{
    std::shared_ptr<NSWindow> window(new NSWindow(std::move(contentViewController)));
    window->contentView()->setWindow(window);
    window->setContentMinSize(window->contentSize());
    openWindows().push_back(window);
    return window;
}

const std::vector<std::shared_ptr<NSWindow>>& NSWindow::windows()
{
    return openWindows();
}

void NSWindow::closeAll()
{
    while (!openWindows().empty()) {
        const std::shared_ptr<NSWindow> window = openWindows().front();
        window->close();
    }
}

void NSWindow::setTitle(std::string title)
{
    title_ = std::move(title);
    setViewsNeedDisplay();
}

void NSWindow::setContentSize(NSSize size)
{
    contentView()->setFrameSize({ std::clamp(size.width, shownMinimum_.width, shownMaximum_.width),
                                  std::clamp(size.height, shownMinimum_.height, shownMaximum_.height) });
}

void NSWindow::setContentMinSize(NSSize size)
{
    minimum_ = shownMinimum_ = size;
}

void NSWindow::setContentMaxSize(NSSize size)
{
    maximum_ = shownMaximum_ = size;
}

void NSWindow::fitContent()
{
    const NSSize room = display().roomFor(*this);
    NSSize least = contentView()->roomySize(minimum_);
    if (least.height > room.height)
        least.width += display().scrollerWidth(true);
    shownMinimum_ = { std::min(least.width, room.width), std::min(least.height, room.height) };
    const NSSize largest { std::max(maximum_.width, least.width), maximum_.height + least.height - minimum_.height };
    shownMaximum_ = { std::min(largest.width, room.width), std::min(largest.height, room.height) };
    setContentSize(styleMask_ & resizable ? contentSize() : shownMinimum_);
}

void NSWindow::orderFrontRegardless()
{
    if (std::find(openWindows().begin(), openWindows().end(), shared_from_this()) == openWindows().end())
        return;
    if (!isVisible_)
        fitContent();
    layoutIfNeeded();
    isVisible_ = true;
    display().orderFront(*this);
}

void NSWindow::performClose(NSObject*)
{
    if (attachedSheet() || !(styleMask_ & closable))
        return;
    close();
}

void NSWindow::close()
{
    const std::shared_ptr<NSWindow> held = shared_from_this();
    if (std::erase(openWindows(), held) == 0)
        return;
    if (const auto sheet = attachedSheet())
        endSheet(sheet, NSModalResponseCancel);
    if (const auto parent = sheetParent())
        parent->endSheet(held, NSModalResponseCancel);
    isVisible_ = false;
    display().close(*this);
    // The button whose press closed the window may still be at work.
    NSApplication::shared().releaseAfterEvent(held);
}

void NSWindow::beginSheet(const std::shared_ptr<NSWindow>& sheet, std::function<void(NSModalResponse)> completion)
{
    sheet->fitContent();
    sheet->layoutIfNeeded();
    sheet->attachTo(*this, std::move(completion));
    display().beginSheet(*sheet, *this);
}

void NSWindow::attachTo(NSWindow& parent, std::function<void(NSModalResponse)> completion)
{
    QB_CHECK(!parent.attachedSheet());
    const std::shared_ptr<NSWindow> self = shared_from_this();
    if (std::find(openWindows().begin(), openWindows().end(), self) == openWindows().end())
        openWindows().push_back(self);
    parent.sheet_ = self;
    sheetParent_ = parent.weak_from_this();
    sheetCompletion_ = std::move(completion);
    isVisible_ = true;
}

void NSWindow::endSheet(const std::shared_ptr<NSWindow>& sheet, NSModalResponse returnCode)
{
    if (!sheet || attachedSheet() != sheet)
        return;
    sheet_.reset();
    sheet->sheetParent_.reset();
    const auto completion = std::move(sheet->sheetCompletion_);
    sheet->close();
    if (completion)
        completion(returnCode);
}

void NSWindow::layoutIfNeeded()
{
    // Views that never agree would be laid out for ever.
    constexpr int kMostPasses = 4;
    for (int pass = 0; pass < kMostPasses && contentView()->needsLayout(); ++pass)
        contentView()->layoutIfNeeded();
}

void NSWindow::makeFirstResponder(const std::shared_ptr<NSView>& view)
{
    firstResponder_ = view;
    if (view)
        view->scrollToVisible();
    ++firstResponderCount_;
    setViewsNeedDisplay();
}

void NSWindow::setViewsNeedDisplay()
{
    if (isVisible_)
        display().setNeedsDisplay(*this);
}

} // namespace quillbox
