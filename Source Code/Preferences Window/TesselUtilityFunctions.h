#pragma once

#include "AttributedString.h"
#include "NSTextField.h"

#include <memory>
#include <optional>
#include <string>

namespace quillbox {

// Makes all labels and text fields of the preferences window and the item editor.
class TesselUtilityFunctions {
public:
    TesselUtilityFunctions() = delete;

    struct TextField {
        // Shown if there is no attributed text. Without either, the field shows "addTextFieldToView text".
        std::optional<std::string> text {};
        std::optional<AttributedString> attributedText {};
        // The view to which the field is added.
        std::shared_ptr<NSView> view {};
        // The view at whose top left corner the field is placed; `view` if this is empty.
        std::shared_ptr<NSView> alignTopLeftWith {};
        // The view below which the field is placed; it takes precedence over alignTopLeftWith.
        std::shared_ptr<NSView> placeBelow {};
        // The distance from that corner, in points.
        double xOffset = 0;
        double yOffset = 0;
        // If true, the caller makes the constraints of the position.
        bool noAutoLayout = false;
        // In points; a value below 1 sets no width.
        int width = 0;
        bool selectable = false;
        bool editable = false;
        // The default is the user font in its default size.
        std::optional<FontAttribute> font {};
    };

    static std::shared_ptr<NSTextField> addTextFieldToView(const TextField& field);
};

} // namespace quillbox
