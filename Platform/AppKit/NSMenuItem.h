#pragma once

#include "AttributedString.h"
#include "NSImage.h"
#include "NSObject.h"

#include <memory>
#include <optional>
#include <string>

namespace quillbox {

class NSMenu;

enum class NSControlStateValue { off, on };

// One row of a menu. It owns its submenu, and is owned by the menu that it is in. A row with neither action nor submenu
// is shown disabled. A row that has a submenu but no action can be opened, but not chosen.
class NSMenuItem : public NSObject {
public:
    NSMenuItem() = default;
    explicit NSMenuItem(std::string title, const Selector* action = nullptr);
    ~NSMenuItem() override;

    static std::shared_ptr<NSMenuItem> separatorItem();
    bool isSeparatorItem() const { return isSeparator_; }

    // Valid UTF-8. It is shown as it is; "&" marks no mnemonic.
    const std::string& title() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }
    // Shown in place of the title if it is set. It may have several lines.
    const AttributedString* attributedTitle() const
    {
        return rare_ && rare_->attributedTitle ? &*rare_->attributedTitle : nullptr;
    }
    void setAttributedTitle(AttributedString title);

    // The image is empty if the row has none.
    const NSImage& image() const { return image_; }
    void setImage(NSImage image) { image_ = std::move(image); }

    // `action` must be a constant of the program.
    const Selector* action() const { return action_; }
    void setAction(const Selector* action) { action_ = action; }
    std::shared_ptr<NSObject> target() const { return target_.lock(); }
    void setTarget(std::weak_ptr<NSObject> target) { target_ = std::move(target); }
    bool isEnabled() const { return action_ || submenu_; }
    // What choosing the row does while Control is held; null if that makes no difference. It has the same target.
    virtual const Selector* alternateAction() const { return nullptr; }
    // Returns the path of the file that the row stands for, as the file system's bytes; nothing if it stands for
    // none.
    virtual std::optional<std::string> representedFile() const { return std::nullopt; }

    const std::shared_ptr<NSMenu>& submenu() const { return submenu_; }
    // A menu may be the submenu of only one item.
    void setSubmenu(std::shared_ptr<NSMenu> submenu);
    bool hasSubmenu() const { return submenu_ != nullptr; }

    // The text is empty if the row has no tool tip.
    const std::string& toolTip() const;
    void setToolTip(std::string toolTip) { rare().toolTip = std::move(toolTip); }

    // Returns nothing for a row that has no check mark.
    std::optional<NSControlStateValue> state() const { return rare_ ? rare_->state : std::nullopt; }
    void setState(NSControlStateValue state) { rare().state = state; }

    // Returns the menu that holds this item, or null. The menu clears it when the item leaves.
    NSMenu* menu() const { return menu_; }

private:
    friend class NSMenu;

    // What few rows of a long menu have.
    struct Rare {
        std::string toolTip;
        std::optional<AttributedString> attributedTitle;
        std::optional<NSControlStateValue> state;
    };
    Rare& rare();

    std::string title_;
    // Null while nothing in it has been set.
    std::unique_ptr<Rare> rare_;
    NSImage image_;
    const Selector* action_ = nullptr;
    std::weak_ptr<NSObject> target_;
    std::shared_ptr<NSMenu> submenu_;
    NSMenu* menu_ = nullptr;
    bool isSeparator_ = false;
};

} // namespace quillbox
