#include "NSUndoManager.h"

#include <utility>

namespace quillbox {

void NSUndoManager::registerUndo(std::function<void()> undo)
{
    Steps& steps = registeringIn_ ? *registeringIn_ : undo_;
    steps.push_back(std::move(undo));
    if (steps.size() > kMostSteps)
        steps.erase(steps.begin());
    // After a new change, the undone ones can't be redone any more.
    if (!registeringIn_)
        redo_.clear();
}

void NSUndoManager::perform(Steps& from, Steps& registeringIn)
{
    if (from.empty() || registeringIn_)
        return;
    const auto step = std::move(from.back());
    from.pop_back();
    registeringIn_ = &registeringIn;
    step();
    registeringIn_ = nullptr;
}

void NSUndoManager::undo()
{
    perform(undo_, redo_);
}

void NSUndoManager::redo()
{
    perform(redo_, undo_);
}

} // namespace quillbox
