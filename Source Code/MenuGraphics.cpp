#include "MenuGraphics.h"

namespace quillbox {

const std::optional<NSImage>& missingItemIcon()
{
    static const std::optional<NSImage> icon = []() -> std::optional<NSImage> {
        const auto dot = NSImage::imageNamed(NSImageNameStatusUnavailable);
        if (!dot)
            return std::nullopt;
        NSImage image(menuIconSize);
        image.draw(*dot, menuIconRect);
        return image;
    }();
    return icon;
}

} // namespace quillbox
