#pragma once

#include "AttributedString.h"
#include "NSTextField.h"

#include <memory>
#include <optional>
#include <string>

namespace quillbox {

// The one maker of the labels and text fields of the preferences window and the item editor.
class TesselUtilityFunctions {
public:
    TesselUtilityFunctions() = delete;

    struct TextField {
        // Shown where there is no attributed text; without either the field shows "addTextFieldToView text".
        std::optional<std::string> text {};
        std::optional<AttributedString> attributedText {};
        // The view that it becomes a subview of.
        std::shared_ptr<NSView> view {};
        // The view whose top and left edges it follows; `view` where there is none.
        std::shared_ptr<NSView> alignTopLeftWith {};
        // The view below which it lies, which counts more than the one before.
        std::shared_ptr<NSView> placeBelow {};
        // Points.
        double xOffset = 0;
        double yOffset = 0;
        // The caller makes the constraints of its position.
        bool noAutoLayout = false;
        // Points; none below 1.
        int width = 0;
        bool selectable = false;
        bool editable = false;
        // The user font of the default size where there is none.
        std::optional<FontAttribute> font {};
    };

    static std::shared_ptr<NSTextField> addTextFieldToView(const TextField& field);
};

} // namespace quillbox
