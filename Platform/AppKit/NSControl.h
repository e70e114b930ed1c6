#pragma once

#include "AttributedString.h"
#include "NSView.h"

namespace quillbox {

// A view that the user can operate; it then sends its action to its target.
class NSControl : public NSView {
public:
    bool isEnabled() const { return isEnabled_; }
    void setEnabled(bool enabled);
    // A number for the control's owner, such as the row that the control belongs to.
    int tag() const { return tag_; }
    void setTag(int tag) { tag_ = tag; }
    const FontAttribute& font() const { return font_; }
    void setFont(FontAttribute font);

    const Selector* action() const { return action_; }
    std::shared_ptr<NSObject> target() const { return target_.lock(); }
    // Sets the target, which is held weakly, and the action, which is a constant. Nothing is sent without either.
    void setTarget(const std::shared_ptr<NSObject>& target, const Selector* action);
    // Sends the action with this control as the sender. Both control and target are kept alive until the action ends.
    bool sendAction();

private:
    bool isEnabled_ = true;
    int tag_ = 0;
    FontAttribute font_;
    const Selector* action_ = nullptr;
    std::weak_ptr<NSObject> target_;
};

} // namespace quillbox
