#include "NSMenuItem.h"

#include "NSMenu.h"

namespace quillbox {

NSMenuItem::NSMenuItem(std::string title, const Selector* action) : title_(std::move(title)), action_(action) { }

NSMenuItem::~NSMenuItem()
{
    if (submenu_)
        submenu_->superItem_ = nullptr;
}

std::shared_ptr<NSMenuItem> NSMenuItem::separatorItem()
{
    auto item = std::make_shared<NSMenuItem>();
    item->isSeparator_ = true;
    return item;
}

NSMenuItem::Rare& NSMenuItem::rare()
{
    if (!rare_)
        rare_ = std::make_unique<Rare>();
    return *rare_;
}

const std::string& NSMenuItem::toolTip() const
{
    static const std::string none;
    return rare_ ? rare_->toolTip : none;
}

void NSMenuItem::setAttributedTitle(AttributedString title)
{
    rare().attributedTitle = std::move(title);
}

void NSMenuItem::setSubmenu(std::shared_ptr<NSMenu> submenu)
{
    if (submenu_)
        submenu_->superItem_ = nullptr;
    submenu_ = std::move(submenu);
    if (submenu_) {
        QB_CHECK(!submenu_->superItem_);
        submenu_->superItem_ = this;
    }
}

} // namespace quillbox
