#include "DragTracking.h"

#include <algorithm>

namespace quillbox {

namespace {

    std::shared_ptr<NSView> destinationAbove(std::shared_ptr<NSView> view, const NSPasteboard& pasteboard)
    {
        for (; view; view = view->superview()) {
            const auto& types = view->registeredDraggedTypes();
            if (std::any_of(types.begin(), types.end(), [&](const auto& type) { return pasteboard.hasType(type); }))
                return view;
        }
        return nullptr;
    }

} // namespace

NSDragOperation DragTracking::move(const std::shared_ptr<NSView>& view, NSPoint location)
{
    const auto destination = destinationAbove(view, pasteboard_);
    if (destination.get() != destination_.lock().get())
        leave();
    if (!destination)
        return operation_ = NSDragOperation::none;
    location_ = view->convert({ location, {} }, *destination).origin;
    if (destination_.expired()) {
        destination_ = lastDestination_ = destination;
        operation_ = destination->draggingEntered(info());
    } else if (const auto updated = destination->draggingUpdated(info())) {
        operation_ = *updated;
    }
    return operation_;
}

void DragTracking::leave()
{
    if (const auto destination = destination_.lock())
        destination->draggingExited();
    destination_.reset();
    operation_ = NSDragOperation::none;
}

bool DragTracking::drop()
{
    const auto destination = destination_.lock();
    if (!destination || operation_ == NSDragOperation::none) {
        leave();
        return false;
    }
    destination_.reset();
    operation_ = NSDragOperation::none;
    if (!destination->prepareForDragOperation(info()))
        return false;
    const bool isTaken = destination->performDragOperation(info());
    if (isTaken)
        destination->concludeDragOperation();
    return isTaken;
}

void DragTracking::end()
{
    leave();
    if (const auto last = lastDestination_.lock())
        last->draggingEnded();
    lastDestination_.reset();
}

} // namespace quillbox
