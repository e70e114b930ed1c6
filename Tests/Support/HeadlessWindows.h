#pragma once

#include "AttributedString.h"
#include "WindowDisplay.h"

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace quillbox {

// Windows without a display: it records what was shown, and measures texts by a fixed rule, so that frames are the
// same everywhere. A character of a font of size s (13 unless given, 11 for the small size) is (s + 1) / 2 wide
// and s + 3 high, rounded; texts wrap between words.
class HeadlessWindows final : public WindowDisplay {
public:
    void orderFront(NSWindow& window) override;
    void close(NSWindow& window) override;
    void beginSheet(NSWindow& sheet, NSWindow& parent) override;
    NSPoint contentOrigin(const NSWindow&) override { return {}; }
    void setNeedsDisplay(NSWindow&) override { }
    void beginOpenPanel(std::shared_ptr<NSOpenPanel> openPanel, NSWindow& parent,
                        std::function<void(int response)> completion) override;

    NSSize naturalSize(const NSTextField& field, double widthLimit) override;
    NSSize naturalSize(const NSButton& button, double widthLimit) override;
    NSSize naturalSize(const NSPopUpButton& button) override;
    NSSize roomFor(const NSWindow&) override { return room; }
    double fontSize() override { return 13 * textScale; }
    double tableRowHeight() override { return 24 * textScale; }
    double scrollerWidth(bool isSmall) override { return isSmall ? 11 : 15; }
    double scrollViewBorder() override { return 1; }
    NSEdgeInsets tabViewInsets() override { return { 30, 2, 2, 2 }; }

    FontAttribute scaled(FontAttribute font) const;

    // What was asked, in order: "show Quillbox Preferences", "sheet ", "close ...".
    std::vector<std::string> calls;
    std::set<NSWindow*> shown;
    // What the screen has for a window's content.
    NSSize room { 10000, 10000 };
    // Texts of the default size, and what is made for them, are that much larger than by the rule.
    double textScale = 1;
    // The last open panel, and what ends it.
    std::shared_ptr<NSOpenPanel> panel;
    std::function<void(int response)> endPanel;
};

} // namespace quillbox
