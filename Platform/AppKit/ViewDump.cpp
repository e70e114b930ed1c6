#include "ViewDump.h"

#include "NSButton.h"
#include "NSPopUpButton.h"
#include "NSTextField.h"

#include <cstdio>

namespace quillbox {

namespace {

    std::string nameOf(const NSView& view)
    {
        if (!view.identifier().empty())
            return view.identifier();
        if (const auto* field = dynamic_cast<const NSTextField*>(&view))
            return field->stringValue();
        if (const auto* button = dynamic_cast<const NSButton*>(&view))
            return button->title();
        if (const auto* popUp = dynamic_cast<const NSPopUpButton*>(&view))
            return popUp->titleOfSelectedItem();
        return {};
    }

    // Long texts by their beginning, on one line.
    std::string shortened(std::string text)
    {
        constexpr std::size_t kLongest = 40;
        for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at))
            text.replace(at, 1, "\\n");
        if (text.size() <= kLongest)
            return text;
        std::size_t end = kLongest;
        while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
            --end;
        return text.substr(0, end) + "...";
    }

    template <class FrameOf>
    void dump(std::string& out, const NSView& view, int depth, const FrameOf& frameOf)
    {
        const NSRect frame = frameOf(view);
        out.append(static_cast<std::size_t>(depth) * 2, ' ');
        out += view.className();
        if (const std::string name = nameOf(view); !name.empty())
            out.append(" \"").append(shortened(name)).append("\"");
        char numbers[128];
        std::snprintf(numbers, sizeof numbers, " %g,%g %gx%g%s\n", frame.minX(), frame.minY(), frame.size.width,
                      frame.size.height, view.isHidden() ? " (hidden)" : "");
        out += numbers;
        for (const auto& subview : view.subviews())
            dump(out, *subview, depth + 1, frameOf);
    }

} // namespace

std::string viewDump(const NSView& view)
{
    std::string out;
    dump(out, view, 0, [](const NSView& each) { return each.frame(); });
    return out;
}

std::string viewDumpOnScreen(const NSView& topmost, NSPoint topLeft)
{
    std::string out;
    dump(out, topmost, 0, [&](const NSView& each) {
        NSRect frame = each.convert(each.bounds(), topmost);
        frame.origin.x += topLeft.x;
        frame.origin.y += topLeft.y;
        return frame;
    });
    return out;
}

} // namespace quillbox
