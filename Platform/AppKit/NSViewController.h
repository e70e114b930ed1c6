#pragma once

#include "NSView.h"

namespace quillbox {

// Owns a view and receives the actions of its controls. A window keeps the controller of its content.
class NSViewController : public NSObject, public std::enable_shared_from_this<NSViewController> {
public:
    const std::shared_ptr<NSView>& view() const { return view_; }
    void setView(std::shared_ptr<NSView> view) { view_ = std::move(view); }

private:
    std::shared_ptr<NSView> view_;
};

} // namespace quillbox
