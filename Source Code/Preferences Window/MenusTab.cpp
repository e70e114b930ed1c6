#include "MenusTab.h"

#include "NSFont.h"
#include "NSImageView.h"
#include "SuggestedMenuItemsTable.h"
#include "TentativeMenuItemDeleter.h"
#include "TentativeMenuItemsTable.h"
#include "TesselUtilityFunctions.h"
#include "UtilityFunctions.h"

namespace quillbox {

namespace {

    // Points, at least, where texts have grown.
    constexpr double kBetweenTexts = 6;

} // namespace

MenusTab::MenusTab(std::shared_ptr<NSView> tab, std::shared_ptr<NSButton> resetButton)
    : tab_(std::move(tab)),
      resetButton_(std::move(resetButton))
{
    makeViews();
    placeTables();
    placeHeadings();
    placeArrow();
    placeTrash();
    placeReset();
}

std::shared_ptr<NSTextField> MenusTab::addText(const std::string& text, bool isSelectable,
                                               std::optional<FontAttribute> font)
{
    return TesselUtilityFunctions::addTextFieldToView(
        { .text = text, .view = tab_, .noAutoLayout = true, .selectable = isSelectable, .font = font });
}

std::shared_ptr<NSScrollView> MenusTab::addScrollView()
{
    auto scrollView = UtilityFunctions::makeScrollView();
    scrollView->setBorderType(NSScrollView::BorderType::bezelBorder);
    scrollView->setTranslatesAutoresizingMaskIntoConstraints(false);
    tab_->addSubview(scrollView);
    return scrollView;
}

void MenusTab::keepInside(NSTextField& text)
{
    NSLayoutConstraint::activate({ text.rightAnchor().constraintLessThanOrEqualTo(tab_->rightAnchor(), -10) });
    text.setReflowsParagraphs(true);
}

void MenusTab::makeViews()
{
    leftScrollView_ = addScrollView();
    rightScrollView_ = addScrollView();
    tentativeTable_ = TentativeMenuItemsTable::create(leftScrollView_);
    tentativeTable_->setAccessibilityLabel("Your Quillbox");
    tentativeTable_->setToolTip("Alt+Up, Alt+Down: move the selected items\n"
                                "Delete: remove them\n"
                                "Space or F2: an item's settings\n"
                                "Ctrl+V: add copied files\n"
                                "Ctrl+Z, Ctrl+Shift+Z: undo, redo\n"
                                "Ctrl+Tab: the next tab");
    leftScrollView_->setDocumentView(tentativeTable_);
    const auto suggestedTable = SuggestedMenuItemsTable::create();
    suggestedTable->setAccessibilityLabel("Suggested Menu Items");
    suggestedTable->setToolTip(
        "Return or Insert: add the selected items to your Quillbox, below what is selected there");
    suggestedTable->tableWithTentativeMenus = tentativeTable_;
    rightScrollView_->setDocumentView(suggestedTable);

    instructions_ = addText("Drag items from the right (suggested) menus to the left (actual) menus, and/or\n"
                            "drag file/directory icons from the Finder into your menu, to add them to the menus\n\n"
                            "Click the icon next to each left (actual) menu to configure that item's settings,\n"
                            "and to see any menu-specific notes",
                            true);
    instructions_->setReflowsParagraphs(true);
    trash_ = std::make_shared<TentativeMenuItemDeleter>();
    trash_->tableWithTentativeMenus = tentativeTable_;
    trash_->setTranslatesAutoresizingMaskIntoConstraints(false);
    tab_->addSubview(trash_);
}

void MenusTab::placeTables()
{
    NSLayoutConstraint::activate({
        leftScrollView_->leftAnchor().constraintEqualTo(tab_->leftAnchor(), 20),
        leftScrollView_->rightAnchor().constraintEqualTo(tab_->centerXAnchor(), -15).stretchable(),
        leftScrollView_->topAnchor().constraintEqualTo(tab_->topAnchor(), 40).stretchable(),
        leftScrollView_->bottomAnchor().constraintEqualTo(instructions_->topAnchor(), -15),
        rightScrollView_->leftAnchor().constraintEqualTo(tab_->centerXAnchor(), 15).stretchable(),
        rightScrollView_->rightAnchor().constraintEqualTo(tab_->rightAnchor(), -20),
        rightScrollView_->topAnchor().constraintEqualTo(leftScrollView_->topAnchor()),
        rightScrollView_->bottomAnchor().constraintEqualTo(leftScrollView_->bottomAnchor()),
    });
}

void MenusTab::placeHeadings()
{
    // What the icon takes of the left list's width, on the other side and above the other list too.
    constexpr double kBesideHeading = 26;
    const auto placeAbove = [&](const std::shared_ptr<NSTextField>& heading, NSScrollView& scrollView) {
        NSLayoutConstraint::activate({
            heading->topAnchor().constraintGreaterThanOrEqualTo(tab_->topAnchor(), 6),
            heading->leftAnchor().constraintGreaterThanOrEqualTo(scrollView.leftAnchor(), kBesideHeading),
            heading->rightAnchor().constraintLessThanOrEqualTo(scrollView.rightAnchor(), -kBesideHeading),
            heading->centerXAnchor().constraintEqualTo(scrollView.centerXAnchor()),
            heading->bottomAnchor().constraintEqualTo(scrollView.topAnchor(), -5),
        });
    };
    placeAbove(addText("Your Quillbox", false), *leftScrollView_);
    placeAbove(addText("Suggested Menu Items", false), *rightScrollView_);

    const auto image = NSImage::imageNamed("Quillbox Icon");
    if (!image)
        return;
    const auto icon = std::make_shared<NSImageView>();
    icon->setIdentifier("Quillbox Icon");
    icon->setImage(*image);
    icon->setImageFrameStyle(NSImageView::FrameStyle::photo);
    icon->setTranslatesAutoresizingMaskIntoConstraints(false);
    tab_->addSubview(icon);
    NSLayoutConstraint::activate({
        icon->leftAnchor().constraintEqualTo(leftScrollView_->leftAnchor(), 4),
        icon->bottomAnchor().constraintEqualTo(leftScrollView_->topAnchor(), -2),
        icon->widthAnchor().constraintEqualToConstant(image->size().width),
        icon->heightAnchor().constraintEqualToConstant(image->size().height),
    });
}

void MenusTab::placeArrow()
{
    const auto drag = addText("Drag", false, NSFont::boldSystemFont(0));
    const auto arrow = addText("\u293D", false, NSFont::userFont(38));
    NSLayoutConstraint::activate({
        drag->centerXAnchor().constraintEqualTo(tab_->centerXAnchor()),
        drag->centerYAnchor().constraintEqualTo(leftScrollView_->topAnchor(), 20),
        drag->leftAnchor().constraintGreaterThanOrEqualTo(leftScrollView_->rightAnchor(), 1),
        drag->rightAnchor().constraintLessThanOrEqualTo(rightScrollView_->leftAnchor(), -1),
        arrow->centerXAnchor().constraintEqualTo(tab_->centerXAnchor()),
        arrow->topAnchor().constraintEqualTo(drag->bottomAnchor(), -14),
    });
}

void MenusTab::placeTrash()
{
    const auto arrow = addText("\u2B05", false, NSFont::userFont(24));
    trashText_ = addText("Drag items from the left (actual) menus to this\n"
                         "trash can to remove them from your menu",
                         true);
    keepInside(*instructions_);
    keepInside(*trashText_);
    NSLayoutConstraint::activate({
        instructions_->leftAnchor().constraintEqualTo(trash_->leftAnchor(), 1),
        instructions_->bottomAnchor().constraintEqualTo(trash_->topAnchor(), -13).stretchable(),
        instructions_->bottomAnchor().constraintLessThanOrEqualTo(trashText_->topAnchor(), -kBetweenTexts),
        trash_->leftAnchor().constraintEqualTo(tab_->leftAnchor(), 20),
        trash_->bottomAnchor().constraintEqualTo(resetButton_->topAnchor(), -12).stretchable(),
        trashText_->bottomAnchor().constraintLessThanOrEqualTo(resetButton_->topAnchor(), -kBetweenTexts),
        trash_->widthAnchor().constraintEqualToConstant(40),
        trash_->heightAnchor().constraintEqualToConstant(40),
        arrow->leftAnchor().constraintEqualTo(trash_->rightAnchor(), 2),
        arrow->centerYAnchor().constraintEqualTo(trash_->centerYAnchor()),
        trashText_->leftAnchor().constraintEqualTo(arrow->rightAnchor(), 9),
        trashText_->centerYAnchor().constraintEqualTo(arrow->centerYAnchor()),
    });
}

void MenusTab::placeReset()
{
    const auto text = addText("Reset the menus to their default", true);
    keepInside(*text);
    NSLayoutConstraint::activate({
        resetButton_->leftAnchor().constraintEqualTo(tab_->leftAnchor(), 20),
        resetButton_->bottomAnchor().constraintEqualTo(tab_->bottomAnchor(), -12).stretchable(),
        text->topAnchor().constraintGreaterThanOrEqualTo(trash_->bottomAnchor(), kBetweenTexts),
        text->topAnchor().constraintGreaterThanOrEqualTo(trashText_->bottomAnchor(), kBetweenTexts),
        text->bottomAnchor().constraintLessThanOrEqualTo(tab_->bottomAnchor(), -kBetweenTexts),
        text->leftAnchor().constraintEqualTo(resetButton_->rightAnchor(), 9),
        text->centerYAnchor().constraintEqualTo(resetButton_->centerYAnchor()),
    });
}

} // namespace quillbox
