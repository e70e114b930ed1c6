#pragma once

#include "NSButton.h"
#include "NSScrollView.h"

namespace quillbox {

// A button that shows a cursor of its own while enough of it can be seen in its scroll view.
class NSButtonPlusCursor final : public NSButton {
public:
    explicit NSButtonPlusCursor(NSCursor cursor) : thisCursor(cursor) { }

    const char* className() const override { return "NSButtonPlusCursor"; }

    const NSCursor thisCursor;
    // Set by the owner; without one the button shows no cursor.
    std::weak_ptr<NSClipView> scrollViewContentView;

protected:
    void resetCursorRects() override;
};

} // namespace quillbox
