#pragma once

#include "AttributedString.h"
#include "NSView.h"

namespace quillbox {

// A view through which the person does something: it sends its action to its target.
class NSControl : public NSView {
public:
    bool isEnabled() const { return isEnabled_; }
    void setEnabled(bool enabled);
    // A number of the owner's, such as the row that the control belongs to.
    int tag() const { return tag_; }
    void setTag(int tag) { tag_ = tag; }
    const FontAttribute& font() const { return font_; }
    void setFont(FontAttribute font);

    const Selector* action() const { return action_; }
    std::shared_ptr<NSObject> target() const { return target_.lock(); }
    // The target is held weakly; `action` is a constant. Without either, nothing is sent.
    void setTarget(const std::shared_ptr<NSObject>& target, const Selector* action);
    // With this control as the sender; control and target are held until the action ends.
    bool sendAction();

private:
    bool isEnabled_ = true;
    int tag_ = 0;
    FontAttribute font_;
    const Selector* action_ = nullptr;
    std::weak_ptr<NSObject> target_;
};

} // namespace quillbox
