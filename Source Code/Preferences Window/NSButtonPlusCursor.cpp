#include "NSButtonPlusCursor.h"

namespace quillbox {

void NSButtonPlusCursor::resetCursorRects()
{
    // A sliver that looks out at the list's edge can't be aimed at.
    constexpr double kSliver = 6;
    const auto clipView = scrollViewContentView.lock();
    if (isHiddenOrHasHiddenAncestor() || !clipView)
        return;
    const NSRect visible = convert(bounds(), *clipView).intersection(clipView->bounds());
    if (visible.size.height > kSliver && visible.size.width > kSliver)
        addCursorRect(bounds(), thisCursor);
}

} // namespace quillbox
