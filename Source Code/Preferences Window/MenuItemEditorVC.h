#pragma once

#include "MainMenuItem.h"
#include "NSButton.h"
#include "NSPopUpButton.h"
#include "NSScrollView.h"
#include "NSTextField.h"
#include "NSViewController.h"

#include <memory>

namespace quillbox {

// The settings of one top-level item, shown in a sheet on the preferences window. Its contents are chosen when it is
// made, and only saving changes the item. The sheet's window keeps the editor alive; neither keeps the item.
class MenuItemEditorVC final : public NSViewController {
public:
    // Builds the view and its window, which the caller shows as a sheet.
    static std::shared_ptr<MenuItemEditorVC> create(const std::shared_ptr<MainMenuItem>& menuItemToEdit);

    // Actions. Both end the sheet: saving with OK, discarding with cancel.
    void saveMenuItemConfiguration(NSObject* sender);
    void discardMenuItemConfiguration(NSObject* sender);

    std::weak_ptr<MainMenuItem> menuItemToEdit;
    // These are empty if the item's kind has no such control.
    std::weak_ptr<NSTextField> displayStringEditTextField;
    std::weak_ptr<NSButton> showHiddenItemsCheckbox;
    std::weak_ptr<NSButton> showPathAsTooltipCheckbox;
    std::weak_ptr<NSButton> showPlaintextAsEnabledCheckbox;
    std::weak_ptr<NSButton> sortByDateCheckbox;
    std::weak_ptr<NSButton> ignoreArticlesCheckbox;
    std::weak_ptr<NSPopUpButton> maxNumberOfItemsMenu;

private:
    MenuItemEditorVC() = default;

    void buildView(const MainMenuItem& item);
    // Adds the view that the sections go into; the buttons stay below it.
    void addPage();
    void addHeading(const MainMenuItem& item);
    void addName(const MainMenuItem& item);
    void addDescription(const MainMenuItem& item);
    void addWarnings(const MainMenuItem& item);
    void addFilePath(const MainMenuItem& item);
    void addOptions(const MainMenuItem& item);
    void addButtons(const MainMenuItem& item);

    void addSectionHeading(const std::string& text);
    void addText(const std::string& text);
    void addWarning(const std::string& heading, const std::string& text);
    // Adds the heading "Options" above the first option.
    void addOptionsHeading();
    std::shared_ptr<NSButton> addCheckbox(const std::string& title, bool isOn);
    void addMaximumMenu(std::int64_t maximum);
    std::shared_ptr<NSButton> addButton(const std::string& title, const Selector& action);
    void endSheet(int returnCode);

    // While the view is built.
    std::shared_ptr<NSScrollView> scrollView_;
    std::shared_ptr<NSView> page_;
    // What the next section is placed below.
    std::shared_ptr<NSView> last_;
    bool hasOptionsHeading_ = false;
};

} // namespace quillbox
