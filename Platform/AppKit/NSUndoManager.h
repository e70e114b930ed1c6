#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace quillbox {

// The changes in one window that can be undone and redone, starting with the last one. It ends with its window.
class NSUndoManager {
public:
    // Called when something is changed, with a function that restores the former state. What that function registers in
    // turn redoes the change.
    void registerUndo(std::function<void()> undo);
    // Both do nothing if there is nothing to undo or redo.
    void undo();
    void redo();

private:
    using Steps = std::vector<std::function<void()>>;
    void perform(Steps& from, Steps& registeringIn);

    // Older steps are dropped, since no one goes back further.
    static constexpr std::size_t kMostSteps = 100;

    Steps undo_;
    Steps redo_;
    // Where the step that is being performed registers its reverse; null at other times.
    Steps* registeringIn_ = nullptr;
};

} // namespace quillbox
