#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace quillbox {

// What can be undone and done again in one window, the last change first. It ends with its window.
class NSUndoManager {
public:
    // Called at a change, with what puts back how it was. What that registers in turn does the change again.
    void registerUndo(std::function<void()> undo);
    // Nothing happens where there is nothing to undo, or nothing that was undone.
    void undo();
    void redo();

private:
    using Steps = std::vector<std::function<void()>>;
    void perform(Steps& from, Steps& registeringIn);

    // A person does not go further back; the oldest steps go.
    static constexpr std::size_t kMostSteps = 100;

    Steps undo_;
    Steps redo_;
    // Where the step that runs registers its reverse; null while the person works.
    Steps* registeringIn_ = nullptr;
};

} // namespace quillbox
