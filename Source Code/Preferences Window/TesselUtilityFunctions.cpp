#include "TesselUtilityFunctions.h"

#include "NSFont.h"

namespace quillbox {

namespace {

    void place(NSTextField& field, const TesselUtilityFunctions::TextField& options)
    {
        const auto& above = options.placeBelow;
        const auto& anchor = options.alignTopLeftWith ? options.alignTopLeftWith : options.view;
        if (above) {
            NSLayoutConstraint::activate(
                { field.topAnchor().constraintEqualTo(above->bottomAnchor(), options.yOffset),
                  field.leftAnchor().constraintEqualTo(above->leftAnchor(), options.xOffset) });
        } else if (anchor) {
            NSLayoutConstraint::activate(
                { field.topAnchor().constraintEqualTo(anchor->topAnchor(), options.yOffset),
                  field.leftAnchor().constraintEqualTo(anchor->leftAnchor(), options.xOffset) });
        }
    }

} // namespace

std::shared_ptr<NSTextField> TesselUtilityFunctions::addTextFieldToView(const TextField& options)
{
    auto field = std::make_shared<NSTextField>();
    field->setSelectable(options.selectable || options.editable);
    field->setEditable(options.editable);
    field->setBezeled(options.editable);
    if (options.attributedText)
        field->setAttributedStringValue(*options.attributedText);
    else
        field->setStringValue(options.text.value_or("addTextFieldToView text"));
    field->setFont(options.font.value_or(NSFont::userFont(0)));
    field->setTranslatesAutoresizingMaskIntoConstraints(false);
    if (options.view)
        options.view->addSubview(field);
    if (!options.noAutoLayout)
        place(*field, options);
    if (options.width >= 1)
        NSLayoutConstraint::activate({ field->widthAnchor().constraintEqualToConstant(options.width) });
    return field;
}

} // namespace quillbox
