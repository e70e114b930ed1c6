#include "NSButtonPlusCursor.h"

namespace quillbox {

void NSButtonPlusCursor::resetCursorRects()
{
    // If only this much of the button is visible, in points, it can't be aimed at.
    constexpr double kSliver = 6;
    const auto clipView = scrollViewContentView.lock();
    if (isHiddenOrHasHiddenAncestor() || !clipView)
        return;
    const NSRect visible = convert(bounds(), *clipView).intersection(clipView->bounds());
    if (visible.size.height > kSliver && visible.size.width > kSliver)
        addCursorRect(bounds(), thisCursor);
}

} // namespace quillbox
