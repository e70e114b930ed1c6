#include "TentativeMenuItemDeleter.h"

#include "CALayer.h"
#include "GlobalVars.h"
#include "TentativeMenuItemsTable.h"

#include <any>
#include <chrono>

namespace quillbox {

namespace {

    // In points.
    constexpr double kHighlightWidth = 2;
    constexpr double kFrameSide = 128;
    constexpr int kFrameCount = 10;
    constexpr double kExplosionSide = 80;
    constexpr std::chrono::milliseconds kExplosionDuration { 300 };

    // Makes the frames of the animation. Each is a part of the strip and is drawn when it is first shown.
    std::vector<NSImage> cutSmokeImages()
    {
        std::vector<NSImage> images;
        auto strip = NSImage::imageNamed("Circle Smoke");
        if (!strip)
            return images;
        strip->setSize({ kFrameCount * kFrameSide, kFrameSide });
        images.reserve(kFrameCount);
        const NSRect whole { {}, { kFrameSide, kFrameSide } };
        for (int index = 0; index < kFrameCount; ++index) {
            NSImage frame(whole.size);
            const NSRect part { { index * kFrameSide, 0 }, whole.size };
            frame.draw(*strip, whole, part, NSCompositingOperation::copy, 1.0);
            images.push_back(std::move(frame));
        }
        return images;
    }

} // namespace

TentativeMenuItemDeleter::TentativeMenuItemDeleter()
{
    if (auto image = NSImage::imageNamed(NSImageNameTrashFull))
        setImage(std::move(*image));
    setImageScaling(NSButton::ImageScaling::proportionallyUpOrDown);
    setAccessibilityLabel("Trash");
    registerForDraggedTypes({ GlobalVars::tentativeMenuItemPasteboardType() });
    setLayer(std::make_unique<CALayer>());
}

const std::vector<NSImage>& TentativeMenuItemDeleter::smokeImages()
{
    if (!smokeImages_)
        smokeImages_ = std::make_unique<std::vector<NSImage>>(cutSmokeImages());
    return *smokeImages_;
}

void TentativeMenuItemDeleter::setHighlighted(bool isHighlighted)
{
    if (isHighlighted)
        layer()->setBorder(kHighlightWidth, CGColor::controlAccent);
    else
        layer()->setBorder(0, CGColor::clear);
}

NSDragOperation TentativeMenuItemDeleter::draggingEntered(const NSDraggingInfo&)
{
    setHighlighted(true);
    return NSDragOperation::deleteOperation;
}

void TentativeMenuItemDeleter::draggingExited()
{
    setHighlighted(false);
}

bool TentativeMenuItemDeleter::performDragOperation(const NSDraggingInfo& info)
{
    if (!info.draggingPasteboard.hasType(GlobalVars::tentativeMenuItemPasteboardType()))
        return false;
    if (const auto table = tableWithTentativeMenus.lock()) {
        std::vector<int> rowNums = table->rowsOfDrag(info.draggingPasteboard);
        if (rowNums.empty())
            return false;
        table->deleteMenuItems(std::move(rowNums));
    }
    shouldShowSmokeExplosion = true;
    return true;
}

void TentativeMenuItemDeleter::draggingEnded()
{
    setHighlighted(false);
    if (std::exchange(shouldShowSmokeExplosion, false))
        showSmokeExplosion();
}

void TentativeMenuItemDeleter::showSmokeExplosion()
{
    const auto parent = superview();
    if (!parent || smokeImages().size() < 2)
        return;
    CAKeyframeAnimation animation(CAKeyframeAnimation::contentsKeyPath);
    animation.setValues(std::vector<std::any>(smokeImages().begin(), smokeImages().end()));
    animation.setDuration(kExplosionDuration);

    auto layer = std::make_unique<CALayer>();
    layer->setMasksToBounds(false);
    const auto smoke = std::make_shared<NSView>();
    smoke->setIdentifier("smoke");
    smoke->setLayer(std::move(layer));
    smoke->setTranslatesAutoresizingMaskIntoConstraints(false);
    parent->addSubviewAbove(smoke, *this);
    NSLayoutConstraint::activate({
        smoke->centerXAnchor().constraintEqualTo(centerXAnchor()),
        smoke->centerYAnchor().constraintEqualTo(centerYAnchor()),
        smoke->widthAnchor().constraintEqualToConstant(kExplosionSide),
        smoke->heightAnchor().constraintEqualToConstant(kExplosionSide),
    });

    CATransaction::begin();
    CATransaction::setCompletionBlock([shown = std::weak_ptr(smoke)] {
        if (const auto view = shown.lock())
            view->removeFromSuperview();
    });
    smoke->layer()->add(std::move(animation));
    CATransaction::commit();
}

} // namespace quillbox
