#include "MenuItemEditorVC.h"

#include "GlobalVars.h"
#include "NSFont.h"
#include "NSWindow.h"
#include "TesselUtilityFunctions.h"
#include "UtilityFunctions.h"

#include <array>
#include <charconv>

namespace quillbox {

namespace {

    const Selector kSaveSelector =
        makeSelector<&MenuItemEditorVC::saveMenuItemConfiguration>("saveMenuItemConfigurationWithSender:");
    const Selector kDiscardSelector =
        makeSelector<&MenuItemEditorVC::discardMenuItemConfiguration>("discardMenuItemConfigurationWithSender:");

    // In points.
    constexpr double kWidth = 560;
    constexpr double kMargin = 20;
    constexpr double kBeforeSection = 15;
    constexpr double kBeforeText = 6;
    constexpr double kBeforeName = 8;
    constexpr double kBeforeOption = 10;
    constexpr double kBeforeButtons = 50;
    constexpr double kButtonWidth = 130;
    constexpr double kButtonFromCenter = 30;

    // The numbers of recent items that the user can choose from.
    constexpr std::array kMaximums { 5, 10, 15, 20, 25, 30 };

    std::string headingText(const MainMenuItem& item)
    {
        if (item.menuItemType == MenuItemType::arbitraryPath)
            return "User File/Directory";
        const MainMenuItem::Info* info = MainMenuItem::menuItemInfo(item.menuItemType);
        return info ? info->displayString
                    : "Missing displayString for type " + std::string(rawValue(item.menuItemType));
    }

    std::string descriptionHeading(MenuItemType type)
    {
        switch (type) {
        case MenuItemType::fixedAppPreferences:
            return "Action";
        case MenuItemType::plaintext:
            return "Displays";
        default:
            return "Automatically Contains";
        }
    }

    std::string systemSettingsWarning()
    {
        const std::string& name = GlobalVars::systemSettingsAppName();
        std::string text = "The macOS app\u2011sandbox restricts apps from knowing too much about the Mac they're "
                           "running on, so it's possible that the \"";
        text += name;
        text += "\" menu will use slightly wrong names for some preference\u2011panes, contain panes that configure "
                "types of devices that aren't connected, or include panes that just can't be opened directly from an "
                "app.\n\nFor the ";
        text += name;
        text += " menu, Quillbox does the best it can.";
        return text;
    }

    bool namesDirectory(const MainMenuItem& item)
    {
        return item.fileURL && FileManager::defaultManager().isDirectory(item.fileURL->path());
    }

    void setFlag(MenuOptionFlagsSv& flags, MenuOptionFlagsSv flag, bool isSet)
    {
        if (isSet)
            flags.insert(flag);
        else
            flags.remove(flag);
    }

} // namespace

std::shared_ptr<MenuItemEditorVC> MenuItemEditorVC::create(const std::shared_ptr<MainMenuItem>& menuItemToEdit)
{
    std::shared_ptr<MenuItemEditorVC> editor(new MenuItemEditorVC);
    editor->menuItemToEdit = menuItemToEdit;
    editor->buildView(*menuItemToEdit);
    const auto window = NSWindow::create(editor);
    window->setTitle("Quillbox Preferences");
    window->setStyleMask(NSWindow::titled);
    window->setContentMinSize({ kWidth, 0 });
    return editor;
}

void MenuItemEditorVC::buildView(const MainMenuItem& item)
{
    setView(std::make_shared<NSView>());
    addPage();
    addHeading(item);
    addName(item);
    addDescription(item);
    addWarnings(item);
    addFilePath(item);
    addOptions(item);
    NSLayoutConstraint::activate({ page_->bottomAnchor().constraintEqualTo(last_->bottomAnchor()).stretchable() });
    addButtons(item);
    last_.reset();
    page_.reset();
    scrollView_.reset();
    view()->setFrameSize(view()->fittingSize(kWidth, std::nullopt));
}

void MenuItemEditorVC::addPage()
{
    page_ = std::make_shared<NSView>();
    scrollView_ = UtilityFunctions::makePage(page_);
    view()->addSubview(scrollView_);
    NSLayoutConstraint::activate({
        scrollView_->leftAnchor().constraintEqualTo(view()->leftAnchor()),
        scrollView_->rightAnchor().constraintEqualTo(view()->rightAnchor()),
        scrollView_->topAnchor().constraintEqualTo(view()->topAnchor()),
    });
}

// Sections

void MenuItemEditorVC::addHeading(const MainMenuItem& item)
{
    const auto heading =
        TesselUtilityFunctions::addTextFieldToView({ .text = headingText(item),
                                                     .view = page_,
                                                     .noAutoLayout = true,
                                                     .font = NSFont::userFont(NSFont::userFontSize() + 12) });
    NSLayoutConstraint::activate({
        heading->topAnchor().constraintEqualTo(page_->topAnchor(), 10),
        heading->centerXAnchor().constraintEqualTo(page_->centerXAnchor()),
        heading->rightAnchor().constraintLessThanOrEqualTo(page_->rightAnchor(), -kMargin),
    });
    last_ = heading;
}

void MenuItemEditorVC::addName(const MainMenuItem& item)
{
    addSectionHeading("Display Name");
    const bool isEditable = item.menuItemType != MenuItemType::fixedAppPreferences;
    const auto name = TesselUtilityFunctions::addTextFieldToView({
        .text = item.displayString.empty() ? std::string(rawValue(item.menuItemType)) : item.displayString,
        .view = page_,
        .noAutoLayout = true,
        .editable = isEditable,
    });
    NSLayoutConstraint::activate({
        name->topAnchor().constraintEqualTo(last_->bottomAnchor(), kBeforeName),
        name->leftAnchor().constraintEqualTo(page_->leftAnchor(), kMargin),
        name->rightAnchor().constraintEqualTo(page_->rightAnchor(), -kMargin),
    });
    if (isEditable) {
        name->setAccessibilityLabel("Display Name");
        displayStringEditTextField = name;
    }
    last_ = name;
}

void MenuItemEditorVC::addDescription(const MainMenuItem& item)
{
    const MainMenuItem::Info* info = MainMenuItem::menuItemInfo(item.menuItemType);
    if (item.menuItemType == MenuItemType::arbitraryPath || !info || info->description.empty())
        return;
    addSectionHeading(descriptionHeading(item.menuItemType));
    addText(info->description);
}

void MenuItemEditorVC::addWarnings(const MainMenuItem& item)
{
    if (item.menuItemType == MenuItemType::fixedAppPreferences)
        addWarning("Not Modifiable",
                   "This menu-item isn't modifiable: it always lives at the top of Quillbox's menu, and it always has "
                   "the name \""
                       + item.displayString + "\"");
    else if (item.menuItemType == MenuItemType::systemSettings)
        addWarning(GlobalVars::systemSettingsAppName() + " is Tricky", systemSettingsWarning());
    else if (isRecentItemsKind(item.menuItemType))
        addWarning("Only Shows Accessible Items",
                   "\"" + item.displayString
                       + "\" can only show items that Quillbox can already access, such as items inside directories "
                         "that Quillbox will browse.");
}

void MenuItemEditorVC::addFilePath(const MainMenuItem& item)
{
    if (item.menuItemType != MenuItemType::arbitraryPath)
        return;
    addSectionHeading("File Path");
    addText(item.unixPath.value_or(""));
    if (!item.fileURL)
        addWarning(
            "Missing File",
            "This file isn't accessible.  Maybe it's been deleted, or it's on an unmounted volume, or maybe this "
            "app just doesn't have permission to access it.\n\nIf the file becomes accessible again, it might "
            "have to be manually removed then re-added to your Quillbox.");
}

void MenuItemEditorVC::addOptions(const MainMenuItem& item)
{
    const auto has = [&](MenuOptionFlagsSv flag) { return item.optionFlagsSv.contains(flag); };
    const bool isPicked = item.menuItemType == MenuItemType::arbitraryPath;
    const bool isRecentItems = isRecentItemsKind(item.menuItemType);
    const bool isPlaintext = item.menuItemType == MenuItemType::plaintext;
    if (isPicked && namesDirectory(item))
        showHiddenItemsCheckbox = addCheckbox("Show Hidden Items", has(menuOptionFlagsSv::showHiddenItems));
    if (isRecentItems)
        addMaximumMenu(item.maxNumberOfRecentItems);
    if (isPicked)
        ignoreArticlesCheckbox = addCheckbox("Ignore Leading [A/An/The/quote] When Sorting Filenames",
                                             has(menuOptionFlagsSv::ignoreArticles));
    if (isRecentItems)
        sortByDateCheckbox = addCheckbox("Sort By Date Instead of Name", has(menuOptionFlagsSv::sortByDate));
    if (item.menuItemType != MenuItemType::fixedAppPreferences && !isPlaintext)
        showPathAsTooltipCheckbox =
            addCheckbox("Show File Paths as ToolTips", has(menuOptionFlagsSv::showPathAsTooltip));
    if (isPlaintext)
        showPlaintextAsEnabledCheckbox = addCheckbox("Show As An Enabled Menu-Item (though it still won't do anything)",
                                                     !has(menuOptionFlagsSv::showPlaintextAsDisabled));
}

void MenuItemEditorVC::addButtons(const MainMenuItem& item)
{
    if (item.menuItemType == MenuItemType::fixedAppPreferences) {
        const auto ok = addButton("OK", kDiscardSelector);
        ok->setKeyEquivalent("\r\x1b");
        NSLayoutConstraint::activate({ ok->centerXAnchor().constraintEqualTo(view()->centerXAnchor()) });
        return;
    }
    const auto cancel = addButton("Cancel", kDiscardSelector);
    cancel->setKeyEquivalent("\x1b");
    const auto save = addButton("Use this Setting", kSaveSelector);
    save->setKeyEquivalent("\r");
    NSLayoutConstraint::activate({
        cancel->rightAnchor().constraintEqualTo(view()->centerXAnchor(), -kButtonFromCenter),
        save->leftAnchor().constraintEqualTo(view()->centerXAnchor(), kButtonFromCenter),
    });
}

// Parts of sections

void MenuItemEditorVC::addSectionHeading(const std::string& text)
{
    const auto heading = TesselUtilityFunctions::addTextFieldToView(
        { .text = text, .view = page_, .noAutoLayout = true, .font = NSFont::boldSystemFont(0) });
    NSLayoutConstraint::activate({
        heading->topAnchor().constraintEqualTo(last_->bottomAnchor(), kBeforeSection),
        heading->leftAnchor().constraintEqualTo(page_->leftAnchor(), kMargin),
    });
    last_ = heading;
}

void MenuItemEditorVC::addText(const std::string& text)
{
    const auto field = TesselUtilityFunctions::addTextFieldToView(
        { .text = text, .view = page_, .noAutoLayout = true, .selectable = true });
    NSLayoutConstraint::activate({
        field->topAnchor().constraintEqualTo(last_->bottomAnchor(), kBeforeText),
        field->leftAnchor().constraintEqualTo(page_->leftAnchor(), kMargin),
        field->rightAnchor().constraintEqualTo(page_->rightAnchor(), -kMargin),
    });
    last_ = field;
}

void MenuItemEditorVC::addWarning(const std::string& heading, const std::string& text)
{
    addSectionHeading(heading);
    const auto sign = TesselUtilityFunctions::addTextFieldToView(
        { .text = "\u26A0\uFE0F", .view = page_, .noAutoLayout = true, .font = NSFont::boldSystemFont(20) });
    const auto field = TesselUtilityFunctions::addTextFieldToView(
        { .text = text, .view = page_, .noAutoLayout = true, .selectable = true });
    NSLayoutConstraint::activate({
        sign->topAnchor().constraintEqualTo(last_->bottomAnchor(), kBeforeText),
        sign->leftAnchor().constraintEqualTo(page_->leftAnchor(), kMargin),
        field->topAnchor().constraintEqualTo(last_->bottomAnchor(), kBeforeText),
        field->leftAnchor().constraintEqualTo(sign->rightAnchor(), 10),
        field->rightAnchor().constraintEqualTo(page_->rightAnchor(), -kMargin),
        sign->bottomAnchor().constraintLessThanOrEqualTo(page_->bottomAnchor()),
    });
    last_ = field;
}

void MenuItemEditorVC::addOptionsHeading()
{
    if (!std::exchange(hasOptionsHeading_, true))
        addSectionHeading("Options");
}

std::shared_ptr<NSButton> MenuItemEditorVC::addCheckbox(const std::string& title, bool isOn)
{
    addOptionsHeading();
    auto checkbox = NSButton::checkbox(title);
    checkbox->setOn(isOn);
    checkbox->setTranslatesAutoresizingMaskIntoConstraints(false);
    page_->addSubview(checkbox);
    NSLayoutConstraint::activate({
        checkbox->topAnchor().constraintEqualTo(last_->bottomAnchor(), kBeforeOption),
        checkbox->leftAnchor().constraintEqualTo(page_->leftAnchor(), kMargin),
        checkbox->rightAnchor().constraintLessThanOrEqualTo(page_->rightAnchor(), -kMargin),
    });
    last_ = checkbox;
    return checkbox;
}

void MenuItemEditorVC::addMaximumMenu(std::int64_t maximum)
{
    addOptionsHeading();
    const std::string title = "Number of Recent Items to Display:";
    const auto label =
        TesselUtilityFunctions::addTextFieldToView({ .text = title, .view = page_, .noAutoLayout = true });
    const auto menu = std::make_shared<NSPopUpButton>();
    std::vector<std::string> titles;
    titles.reserve(kMaximums.size());
    for (const int number : kMaximums)
        titles.push_back(std::to_string(number));
    menu->addItems(std::move(titles));
    // This selects the smallest number that is large enough, otherwise the largest.
    std::size_t index = 0;
    while (index + 1 < kMaximums.size() && maximum > kMaximums[index])
        ++index;
    menu->selectItem(static_cast<int>(index));
    menu->setAccessibilityLabel(title);
    menu->setTranslatesAutoresizingMaskIntoConstraints(false);
    page_->addSubview(menu);
    NSLayoutConstraint::activate({
        label->topAnchor().constraintEqualTo(last_->bottomAnchor(), kBeforeOption),
        label->leftAnchor().constraintEqualTo(page_->leftAnchor(), kMargin),
        menu->leftAnchor().constraintEqualTo(label->rightAnchor(), 6),
        menu->rightAnchor().constraintLessThanOrEqualTo(page_->rightAnchor(), -kMargin),
        menu->centerYAnchor().constraintEqualTo(label->centerYAnchor()),
    });
    maxNumberOfItemsMenu = menu;
    last_ = label;
}

std::shared_ptr<NSButton> MenuItemEditorVC::addButton(const std::string& title, const Selector& action)
{
    auto button = std::make_shared<NSButton>();
    button->setTitle(title);
    button->setTarget(shared_from_this(), &action);
    button->setTranslatesAutoresizingMaskIntoConstraints(false);
    view()->addSubview(button);
    NSLayoutConstraint::activate({
        button->widthAnchor().constraintEqualToConstant(kButtonWidth).stretchable(),
        button->leftAnchor().constraintGreaterThanOrEqualTo(view()->leftAnchor(), kMargin),
        button->rightAnchor().constraintLessThanOrEqualTo(view()->rightAnchor(), -kMargin),
        button->topAnchor().constraintEqualTo(scrollView_->bottomAnchor(), kBeforeButtons),
        view()->bottomAnchor().constraintEqualTo(button->bottomAnchor(), 30),
    });
    return button;
}

// Actions

void MenuItemEditorVC::saveMenuItemConfiguration(NSObject*)
{
    if (const auto item = menuItemToEdit.lock()) {
        if (const auto field = displayStringEditTextField.lock())
            item->displayString = field->stringValue();
        const auto save = [&](const std::weak_ptr<NSButton>& checkbox, MenuOptionFlagsSv flag, bool whenOn) {
            if (const auto box = checkbox.lock())
                setFlag(item->optionFlagsSv, flag, box->isOn() == whenOn);
        };
        save(showHiddenItemsCheckbox, menuOptionFlagsSv::showHiddenItems, true);
        save(showPathAsTooltipCheckbox, menuOptionFlagsSv::showPathAsTooltip, true);
        save(showPlaintextAsEnabledCheckbox, menuOptionFlagsSv::showPlaintextAsDisabled, false);
        save(sortByDateCheckbox, menuOptionFlagsSv::sortByDate, true);
        save(ignoreArticlesCheckbox, menuOptionFlagsSv::ignoreArticles, true);
        if (const auto menu = maxNumberOfItemsMenu.lock()) {
            const std::string title = menu->titleOfSelectedItem();
            std::int64_t number = 0;
            const auto [end, error] = std::from_chars(title.data(), title.data() + title.size(), number);
            if (error == std::errc() && end == title.data() + title.size())
                item->maxNumberOfRecentItems = number;
        }
    }
    endSheet(NSModalResponseOK);
}

void MenuItemEditorVC::discardMenuItemConfiguration(NSObject*)
{
    endSheet(NSModalResponseCancel);
}

void MenuItemEditorVC::endSheet(int returnCode)
{
    const auto window = view()->window();
    if (!window)
        return;
    if (const auto parent = window->sheetParent())
        parent->endSheet(window, returnCode);
}

} // namespace quillbox
