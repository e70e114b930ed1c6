#include "ViewDump.h"

#include "NSButton.h"
#include "NSPopUpButton.h"
#include "NSScrollView.h"
#include "NSTextField.h"

#include <cstdio>
#include <functional>

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

    // Puts a text on one line and cuts a long one off.
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

    // The document of a scroll view that scrolls only where it has to, and does not; else null.
    const NSView* restingDocument(const NSView& view)
    {
        const auto* scrollView = dynamic_cast<const NSScrollView*>(&view);
        return scrollView && scrollView->autohidesScrollers() && !scrollView->showsVerticalScroller()
            ? scrollView->contentView()->documentView().get()
            : nullptr;
    }

    // The frame of a view in the coordinates of the one that its line is below; null for the topmost one.
    using FrameOf = std::function<NSRect(const NSView& view, const NSView* above)>;

    void dump(std::string& out, const NSView& stands, const NSView* above, int depth, const FrameOf& frameOf)
    {
        const NSView* document = restingDocument(stands);
        const NSView& view = document ? *document : stands;
        if (document && document->identifier().empty()) {
            for (const auto& subview : document->subviews())
                dump(out, *subview, above, depth, frameOf);
            return;
        }
        const NSRect frame = frameOf(stands, above);
        out.append(static_cast<std::size_t>(depth) * 2, ' ');
        out += view.className();
        if (const std::string name = nameOf(view); !name.empty())
            out.append(" \"").append(shortened(name)).append("\"");
        char numbers[128];
        std::snprintf(numbers, sizeof numbers, " %g,%g %gx%g%s\n", frame.minX(), frame.minY(), frame.size.width,
                      frame.size.height, stands.isHidden() ? " (hidden)" : "");
        out += numbers;
        for (const auto& subview : view.subviews())
            dump(out, *subview, &view, depth + 1, frameOf);
    }

} // namespace

std::string viewDump(const NSView& view)
{
    std::string out;
    dump(out, view, nullptr, 0, [](const NSView& each, const NSView* above) {
        return above ? each.convert(each.bounds(), *above) : each.frame();
    });
    return out;
}

std::string viewDumpOnScreen(const NSView& topmost, NSPoint topLeft)
{
    std::string out;
    dump(out, topmost, nullptr, 0, [&](const NSView& each, const NSView*) {
        NSRect frame = each.convert(each.bounds(), topmost);
        frame.origin.x += topLeft.x;
        frame.origin.y += topLeft.y;
        return frame;
    });
    return out;
}

} // namespace quillbox
