#pragma once

#include "AttributedString.h"
#include "NSButton.h"
#include "NSScrollView.h"
#include "NSTabView.h"
#include "NSTextField.h"
#include "NSViewController.h"
#include "NSWindow.h"

#include <memory>

namespace quillbox {

class TentativeMenuItemsTable;

// The preferences window: its tabs, its buttons and what they do. There is at most one window; it keeps this controller
// until it is closed, and the next window begins with a new copy of the live list. Changes take effect only with Apply.
class PreferencesWindowVC final : public NSViewController, public NSTabViewDelegate {
public:
    // Builds the window and shows it. It is called only if there is none; see
    // StatusMenuItemController::openAppPreferencesWindow.
    static std::shared_ptr<PreferencesWindowVC> create();

    // Empty while no window is open.
    static std::weak_ptr<NSWindow>& preferencesWindow();
    // The text with version and copyright, made on first use.
    static const AttributedString& aboutText();

    // Actions
    void resetTentativeMenus(NSObject* sender);
    void cancelPreferences(NSObject* sender);
    void savePreferences(NSObject* sender);
    void quitTheApp(NSObject* sender);
    void readAllFromUserDefaults(NSObject* sender);
    void printActualMenuItems(NSObject* sender);
    void printMenuItemPlus(NSObject* sender);
    void deletePrefsAndQuit(NSObject* sender);
    // Erases the stored settings; those in memory stay until the next load.
    void eraseUserDefaults(NSObject* sender);

    void tabViewDidSelect(NSTabView& tabView, const NSTabViewItem& item) override;

    std::weak_ptr<TentativeMenuItemsTable> tableWithTentativeMenus;
    std::weak_ptr<NSButton> buttonToSavePrefs;
    std::weak_ptr<NSTextField> aboutTextField;
    std::weak_ptr<NSTextField> debugTextField;
    std::weak_ptr<NSTextField> errorLogTextField;

private:
    PreferencesWindowVC() = default;

    void buildView();
    void fillMenusTab(const std::shared_ptr<NSView>& tab);
    void fillAboutTab(const std::shared_ptr<NSView>& tab);
    void fillQuitTab(const std::shared_ptr<NSView>& tab);
    void fillDebugTab(const std::shared_ptr<NSView>& tab);
    void fillErrorLogTab(const std::shared_ptr<NSView>& tab);
    void addApplyAndCancel(NSView& tabView);

    std::shared_ptr<NSButton> addButton(const std::shared_ptr<NSView>& view, const std::string& title,
                                        const Selector& action);
};

} // namespace quillbox
