#include "PreferencesWindowVC.h"

#include "Bundle.h"
#include "Debug.h"
#include "GlobalVars.h"
#include "ManageDefaults.h"
#include "MenusTab.h"
#include "NSApplication.h"
#include "SuggestedMenuItemsTable.h"
#include "TentativeMenuItemDeleter.h"
#include "TentativeMenuItemsTable.h"
#include "TesselUtilityFunctions.h"
#include "UserDefaults.h"
#include "UtilityFunctions.h"

namespace quillbox {

namespace {

    namespace actions {
        const Selector kReset =
            makeSelector<&PreferencesWindowVC::resetTentativeMenus>("resetTentativeMenusWithSender:");
        const Selector kCancel = makeSelector<&PreferencesWindowVC::cancelPreferences>("cancelPreferencesWithSender:");
        const Selector kSave = makeSelector<&PreferencesWindowVC::savePreferences>("savePreferencesWithSender:");
        const Selector kQuit = makeSelector<&PreferencesWindowVC::quitTheApp>("quitTheAppWithSender:");
        const Selector kReadAll =
            makeSelector<&PreferencesWindowVC::readAllFromUserDefaults>("readAllFromUserDefaultsWithSender:");
        const Selector kPrintActual =
            makeSelector<&PreferencesWindowVC::printActualMenuItems>("printActualMenuItemsWithSender:");
        const Selector kPrintPlus =
            makeSelector<&PreferencesWindowVC::printMenuItemPlus>("printMenuItemPlusWithSender:");
        const Selector kDeletePrefs =
            makeSelector<&PreferencesWindowVC::deletePrefsAndQuit>("deletePrefsAndQuitWithSender:");
    } // namespace actions

    constexpr const char* kErrorLogLabel = "Error Log";

    // In points.
    constexpr NSSize kContentSize { 520, 650 };
    constexpr double kMayGrowBy = 400;
    constexpr double kTabViewWidth = 490;
    constexpr double kMargin = 20;
    constexpr double kButtonWidth = 130;

    // Fills the tab with a scroll view and the text in it.
    std::shared_ptr<NSTextField> fillWithText(const std::shared_ptr<NSView>& tab, const AttributedString& text)
    {
        const auto scrollView = UtilityFunctions::makeScrollView();
        scrollView->setTranslatesAutoresizingMaskIntoConstraints(false);
        tab->addSubview(scrollView);
        NSLayoutConstraint::activate({
            scrollView->leftAnchor().constraintEqualTo(tab->leftAnchor(), 10),
            scrollView->rightAnchor().constraintEqualTo(tab->rightAnchor()),
            scrollView->topAnchor().constraintEqualTo(tab->topAnchor(), 18),
            scrollView->bottomAnchor().constraintEqualTo(tab->bottomAnchor(), -18),
        });
        auto field = TesselUtilityFunctions::addTextFieldToView(
            { .attributedText = text, .noAutoLayout = true, .selectable = true });
        scrollView->setDocumentView(field);
        const auto& clipView = scrollView->contentView();
        NSLayoutConstraint::activate({
            field->topAnchor().constraintEqualTo(clipView->topAnchor(), 10),
            field->leftAnchor().constraintEqualTo(clipView->leftAnchor(), 10),
            field->rightAnchor().constraintEqualTo(clipView->rightAnchor(), -10),
        });
        return field;
    }

    void appendPaths(AttributedString& text, const std::vector<std::string>& paths)
    {
        std::string lines = paths.empty() ? "\n\n(none)" : "\n";
        for (const std::string& path : paths)
            lines.append(path).append("\n");
        text.append(lines + "\n\n");
    }

    AttributedString debugText()
    {
        std::vector<std::string> menuPaths;
        for (const ManageDefaults::FileReference& reference : ManageDefaults::fileReferences())
            menuPaths.push_back(reference.path);
        std::vector<std::string> openedPaths;
        for (const URL& url : ManageDefaults::securityScopedURLs())
            openedPaths.push_back(url.path());
        AttributedString text("Current Menu Paths:", GlobalVars::boldTextAttributes());
        appendPaths(text, menuPaths);
        text.append("Securely-opened paths:", GlobalVars::boldTextAttributes());
        appendPaths(text, openedPaths);
        return text;
    }

    AttributedString errorLogText()
    {
        if (Debug::errorLog().empty())
            return AttributedString("No Errors");
        AttributedString text;
        for (const AttributedString& entry : Debug::errorLog()) {
            if (!text.runs().empty())
                text.append("\n\n\n");
            text.append(entry);
        }
        return text;
    }

} // namespace

std::shared_ptr<PreferencesWindowVC> PreferencesWindowVC::create()
{
    std::shared_ptr<PreferencesWindowVC> controller(new PreferencesWindowVC);
    controller->buildView();
    controller->view()->setFrameSize(kContentSize);
    const auto window = NSWindow::create(controller);
    window->setTitle("Quillbox Preferences");
    window->setStyleMask(NSWindow::titled | NSWindow::closable | NSWindow::resizable);
    window->setContentMinSize(kContentSize);
    window->setContentMaxSize({ kContentSize.width, kContentSize.height + kMayGrowBy });
    NSWindowController(window).showWindow(controller.get());
    preferencesWindow() = window;
    return controller;
}

std::weak_ptr<NSWindow>& PreferencesWindowVC::preferencesWindow()
{
    static std::weak_ptr<NSWindow> window;
    return window;
}

const AttributedString& PreferencesWindowVC::aboutText()
{
    static const AttributedString text = [] {
        const Bundle& bundle = Bundle::main();
        const auto link = [](const char* address) { return TextAttributes { {}, address }; };
        AttributedString about("Quillbox\n", GlobalVars::boldTextAttributes());
        about.append("version: " + bundle.infoString("CFBundleShortVersionString").value_or("unknown") + "\n"
                         + bundle.infoString("NSHumanReadableCopyright").value_or("unknown copyright") + "\n",
                     GlobalVars::smallTextAttributes());
        about.append("\nQuillbox is an app that puts a pull-down menu in the status-bar so that oft-used files and "
                     "directories can be browsed using menus.");
        about.append("\n\nQuillbox can be downloaded from ");
        about.append(QUILLBOX_DOWNLOAD_SITE, link(QUILLBOX_DOWNLOAD_ADDRESS));
        about.append(".\n\n\n");
        about.append("Credits", GlobalVars::boldTextAttributes());
        about.append("\n\nThe \"puff of smoke\" animation in the Menus tab (displayed when a menu-item is deleted) was "
                     "licensed from ");
        about.append(QUILLBOX_SMOKE_LICENSOR, link(QUILLBOX_SMOKE_LICENSOR_ADDRESS));
        about.append(".");
        return about;
    }();
    return text;
}

// Building the window

void PreferencesWindowVC::buildView()
{
    setView(std::make_shared<NSView>());
    const auto tabView = std::make_shared<NSTabView>();
    tabView->setDelegate(std::static_pointer_cast<PreferencesWindowVC>(shared_from_this()));
    tabView->setTranslatesAutoresizingMaskIntoConstraints(false);
    view()->addSubview(tabView);
    NSLayoutConstraint::activate({
        tabView->centerXAnchor().constraintEqualTo(view()->centerXAnchor()),
        tabView->widthAnchor().constraintEqualTo(view()->widthAnchor(), kTabViewWidth - kContentSize.width),
        tabView->topAnchor().constraintEqualTo(view()->topAnchor(), 30),
        tabView->bottomAnchor().constraintEqualTo(view()->bottomAnchor(), -80).stretchable(),
    });
    const auto addTab = [&](const std::string& label,
                            void (PreferencesWindowVC::*fill)(const std::shared_ptr<NSView>&)) {
        auto item = std::make_shared<NSTabViewItem>(label);
        item->view()->setIdentifier(label);
        (this->*fill)(item->view());
        tabView->addTabViewItem(std::move(item));
    };
    addTab("Menus", &PreferencesWindowVC::fillMenusTab);
    addTab("About", &PreferencesWindowVC::fillAboutTab);
    addTab("Quit", &PreferencesWindowVC::fillQuitTab);
    if (ManageDefaults::showDebugTab()) {
        addTab("Debug", &PreferencesWindowVC::fillDebugTab);
        addTab(kErrorLogLabel + (" (" + std::to_string(Debug::errorLog().size()) + ")"),
               &PreferencesWindowVC::fillErrorLogTab);
    }
    addApplyAndCancel(*tabView);
}

std::shared_ptr<NSButton> PreferencesWindowVC::addButton(const std::shared_ptr<NSView>& view, const std::string& title,
                                                         const Selector& action)
{
    auto button = std::make_shared<NSButton>();
    button->setButtonType(NSButton::ButtonType::momentaryPushIn);
    button->setTitle(title);
    button->setTarget(shared_from_this(), &action);
    button->setTranslatesAutoresizingMaskIntoConstraints(false);
    view->addSubview(button);
    return button;
}

void PreferencesWindowVC::fillMenusTab(const std::shared_ptr<NSView>& tab)
{
    const MenusTab menus(tab, addButton(tab, "Reset", actions::kReset));
    tableWithTentativeMenus = menus.tentativeTable();
}

void PreferencesWindowVC::fillAboutTab(const std::shared_ptr<NSView>& tab)
{
    aboutTextField = fillWithText(tab, aboutText());
}

void PreferencesWindowVC::fillQuitTab(const std::shared_ptr<NSView>& tab)
{
    const auto quit = addButton(tab, "Quit", actions::kQuit);
    NSLayoutConstraint::activate({
        quit->centerXAnchor().constraintEqualTo(tab->centerXAnchor()),
        quit->topAnchor().constraintEqualTo(tab->topAnchor(), 40),
    });
}

void PreferencesWindowVC::fillDebugTab(const std::shared_ptr<NSView>& tab)
{
    const auto anchor = std::make_shared<NSView>();
    anchor->setTranslatesAutoresizingMaskIntoConstraints(false);
    tab->addSubview(anchor);
    const auto version = TesselUtilityFunctions::addTextFieldToView(
        { .text = "User Defaults Save Version: " + std::to_string(ManageDefaults::menusSaveVersion),
          .view = tab,
          .noAutoLayout = true });
    NSLayoutConstraint::activate({
        anchor->leftAnchor().constraintEqualTo(tab->leftAnchor(), 20),
        anchor->topAnchor().constraintEqualTo(tab->topAnchor(), 20),
        version->topAnchor().constraintEqualTo(anchor->bottomAnchor(), 15),
        version->leftAnchor().constraintEqualTo(anchor->leftAnchor()),
    });
    std::shared_ptr<NSView> last = version;
    const auto placeBelowLast = [&](const std::shared_ptr<NSView>& view) {
        NSLayoutConstraint::activate({
            view->leftAnchor().constraintEqualTo(last->leftAnchor()),
            view->topAnchor().constraintEqualTo(last->bottomAnchor(), 15),
        });
        last = view;
    };
    const auto addWideButton = [&](const std::string& title, const Selector& action) {
        const auto button = addButton(tab, title, action);
        NSLayoutConstraint::activate({
            button->widthAnchor().constraintEqualToConstant(340).stretchable(),
            button->rightAnchor().constraintLessThanOrEqualTo(tab->rightAnchor(), -kMargin),
        });
        placeBelowLast(button);
    };
    addWideButton("Read Menu-Config Into App", actions::kReadAll);
    addWideButton("Print actualMenuItems[] to stdout", actions::kPrintActual);
    addWideButton("Print dynamicMenuItems[] to stdout", actions::kPrintPlus);
    addWideButton("Delete All Preferences and Quit", actions::kDeletePrefs);
    const auto paths = TesselUtilityFunctions::addTextFieldToView(
        { .attributedText = debugText(), .view = tab, .noAutoLayout = true, .selectable = true });
    placeBelowLast(paths);
    NSLayoutConstraint::activate({
        paths->rightAnchor().constraintEqualTo(tab->rightAnchor(), -kMargin),
        paths->bottomAnchor().constraintLessThanOrEqualTo(tab->bottomAnchor(), -kMargin),
    });
    debugTextField = paths;
}

void PreferencesWindowVC::fillErrorLogTab(const std::shared_ptr<NSView>& tab)
{
    errorLogTextField = fillWithText(tab, errorLogText());
}

void PreferencesWindowVC::addApplyAndCancel(NSView& tabView)
{
    const auto cancel = addButton(view(), "Cancel", actions::kCancel);
    cancel->setKeyEquivalent("\x1b");
    const auto apply = addButton(view(), "Apply", actions::kSave);
    apply->setKeyEquivalent("\r");
    apply->setEnabled(false);
    NSLayoutConstraint::activate({
        cancel->widthAnchor().constraintEqualToConstant(kButtonWidth).stretchable(),
        cancel->bottomAnchor().constraintEqualTo(view()->bottomAnchor(), -30),
        cancel->rightAnchor().constraintEqualTo(view()->centerXAnchor(), -40),
        cancel->leftAnchor().constraintGreaterThanOrEqualTo(view()->leftAnchor(), kMargin),
        apply->widthAnchor().constraintEqualToConstant(kButtonWidth).stretchable(),
        apply->bottomAnchor().constraintEqualTo(view()->bottomAnchor(), -30),
        apply->leftAnchor().constraintEqualTo(view()->centerXAnchor(), 40),
        apply->rightAnchor().constraintLessThanOrEqualTo(view()->rightAnchor(), -kMargin),
        tabView.bottomAnchor().constraintLessThanOrEqualTo(apply->topAnchor(), -10),
    });
    buttonToSavePrefs = apply;
    if (const auto table = tableWithTentativeMenus.lock())
        table->savePreferencesButton = apply;
}

// Actions

void PreferencesWindowVC::resetTentativeMenus(NSObject*)
{
    if (const auto table = tableWithTentativeMenus.lock())
        table->changeList(ManageDefaults::defaultMenuItems(), NSTableView::Animation::gap);
}

void PreferencesWindowVC::cancelPreferences(NSObject* sender)
{
    if (const auto window = view()->window())
        window->performClose(sender);
}

void PreferencesWindowVC::savePreferences(NSObject* sender)
{
    if (const auto table = tableWithTentativeMenus.lock())
        MainMenuItem::actualMenuItems() = table->tentativeMenuItems;
    // The user has been told what could not be stored. The window stays open with its arrangement, so that applying can
    // be tried again.
    if (!ManageDefaults::saveAllToDisk())
        return;
    ManageDefaults::loadAllFromDisk();
    if (!UserDefaults::standard().synchronize())
        return;
    if (const auto window = view()->window())
        window->performClose(sender);
}

void PreferencesWindowVC::quitTheApp(NSObject*)
{
    NSApplication::shared().terminate(this);
}

void PreferencesWindowVC::readAllFromUserDefaults(NSObject*)
{
    ManageDefaults::loadAllFromDisk();
    const auto table = tableWithTentativeMenus.lock();
    if (table)
        table->reloadData();
    if (const auto button = buttonToSavePrefs.lock())
        button->setEnabled(true);
    if (table) {
        table->tile();
        table->reloadData();
    }
}

void PreferencesWindowVC::printActualMenuItems(NSObject*)
{
    MainMenuItem::dumpActualMenuItems();
}

void PreferencesWindowVC::printMenuItemPlus(NSObject*)
{
    Debug::dumpDynamicMenuItems();
}

void PreferencesWindowVC::deletePrefsAndQuit(NSObject*)
{
    // Without an identifier the application has no settings of its own to remove.
    if (const auto identifier = Bundle::main().bundleIdentifier())
        UserDefaults::standard().removePersistentDomain(*identifier);
    NSApplication::shared().terminate(this);
}

void PreferencesWindowVC::eraseUserDefaults(NSObject*)
{
    for (const auto& [key, value] : UserDefaults::standard().dictionaryRepresentation())
        UserDefaults::standard().removeObject(key);
}

void PreferencesWindowVC::tabViewDidSelect(NSTabView&, const NSTabViewItem& item)
{
    std::shared_ptr<NSTextField> field;
    if (item.label() == "About")
        field = aboutTextField.lock();
    else if (item.label() == "Debug")
        field = debugTextField.lock();
    else if (item.label().starts_with(kErrorLogLabel))
        field = errorLogTextField.lock();
    if (!field)
        return;
    field->selectText();
    // The caret is set to the beginning, with no text selected.
    if (auto* editor = field->currentEditor())
        editor->setSelectedRange({ 0, 0 });
}

} // namespace quillbox
