#include "NSPopUpButton.h"

#include "Desktop.h"
#include "NSApplication.h"
#include "WindowDisplay.h"

#include <algorithm>

namespace quillbox {

NSSize NSPopUpButton::naturalSize(double) const
{
    return NSApplication::shared().desktop().windows().naturalSize(*this);
}

NSSize NSPopUpButton::leastSize() const
{
    return { naturalSize(kNoWidthLimit).width, 0 };
}

void NSPopUpButton::addItems(std::vector<std::string> withTitles)
{
    titles_.insert(titles_.end(), std::make_move_iterator(withTitles.begin()),
                   std::make_move_iterator(withTitles.end()));
    if (selected_ < 0 && !titles_.empty())
        selected_ = 0;
    naturalSizeDidChange();
}

void NSPopUpButton::selectItem(int at)
{
    selected_ = at >= 0 && at < static_cast<int>(titles_.size()) ? at : -1;
    setNeedsDisplay();
}

void NSPopUpButton::selectItem(const std::string& withTitle)
{
    const auto found = std::find(titles_.begin(), titles_.end(), withTitle);
    selectItem(found == titles_.end() ? -1 : static_cast<int>(found - titles_.begin()));
}

std::string NSPopUpButton::titleOfSelectedItem() const
{
    return selected_ < 0 ? std::string() : titles_[static_cast<std::size_t>(selected_)];
}

void NSPopUpButton::userSelectsItem(int at)
{
    if (isHeld() || !isEnabled())
        return;
    selectItem(at);
    sendAction();
}

} // namespace quillbox
