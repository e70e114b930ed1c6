#pragma once

#include "NSButton.h"
#include "NSScrollView.h"

namespace quillbox {

// A button that shows a special cursor while enough of it is visible in its scroll view.
class NSButtonPlusCursor final : public NSButton {
public:
    explicit NSButtonPlusCursor(NSCursor cursor) : thisCursor(cursor) { }

    const char* className() const override { return "NSButtonPlusCursor"; }

    const NSCursor thisCursor;
    // Set by the owner; if it is empty, the button shows no cursor.
    std::weak_ptr<NSClipView> scrollViewContentView;

protected:
    void resetCursorRects() override;
};

} // namespace quillbox
