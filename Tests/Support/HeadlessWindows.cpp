#include "HeadlessWindows.h"

#include "NSButton.h"
#include "NSPopUpButton.h"
#include "NSTextField.h"
#include "NSWindow.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace quillbox {

namespace {

    constexpr double kDefaultSize = 13;
    constexpr double kSmallSize = 11;

    double sizeOf(const FontAttribute& font)
    {
        if (font.size == FontAttribute::kSmallSize)
            return kSmallSize;
        return font.size == 0 ? kDefaultSize : font.size;
    }

    double characterWidth(const FontAttribute& font)
    {
        return std::round((sizeOf(font) + 1) / 2);
    }

    double lineHeight(const FontAttribute& font)
    {
        return sizeOf(font) + 3;
    }

    double characterCount(std::string_view text)
    {
        return static_cast<double>(
            std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
    }

    double textWidth(std::string_view text, const FontAttribute& font)
    {
        return characterCount(text) * characterWidth(font);
    }

    // The widths of the lines that a text makes within a width.
    std::vector<double> lineWidths(const std::string& text, const FontAttribute& font, double limit)
    {
        std::vector<double> widths;
        std::size_t begin = 0;
        for (std::size_t end = 0; end != std::string::npos; begin = end + 1) {
            end = text.find('\n', begin);
            std::istringstream words(text.substr(begin, end == std::string::npos ? end : end - begin));
            widths.push_back(0);
            for (std::string word; words >> word;) {
                const double space = widths.back() > 0 ? characterWidth(font) : 0;
                const double width = textWidth(word, font);
                if (widths.back() > 0 && widths.back() + space + width > limit)
                    widths.push_back(width);
                else
                    widths.back() += space + width;
                // A word that is too long is broken.
                while (widths.back() > limit) {
                    const double rest = widths.back() - limit;
                    widths.back() = limit;
                    widths.push_back(rest);
                }
            }
        }
        return widths;
    }

} // namespace

void HeadlessWindows::orderFront(NSWindow& window)
{
    calls.push_back("show " + window.title());
    shown.insert(&window);
}

void HeadlessWindows::close(NSWindow& window)
{
    calls.push_back("close " + window.title());
    shown.erase(&window);
}

void HeadlessWindows::beginSheet(NSWindow& sheet, NSWindow& parent)
{
    calls.push_back("sheet on " + parent.title());
    shown.insert(&sheet);
}

void HeadlessWindows::beginOpenPanel(std::shared_ptr<NSOpenPanel> openPanel, NSWindow& parent,
                                     std::function<void(int)> completion)
{
    calls.push_back("open panel on " + parent.title());
    panel = std::move(openPanel);
    endPanel = std::move(completion);
}

FontAttribute HeadlessWindows::scaled(FontAttribute font) const
{
    if (font.size == 0 || font.size == FontAttribute::kSmallSize)
        font.size = sizeOf(font) * textScale;
    return font;
}

NSSize HeadlessWindows::naturalSize(const NSTextField& field, double widthLimit)
{
    FontAttribute font = scaled(field.font());
    // In a text of several fonts the largest one measures.
    for (const AttributedString::Run& run : field.attributedStringValue().runs()) {
        if (run.attributes.font && sizeOf(scaled(*run.attributes.font)) > sizeOf(font))
            font = scaled(*run.attributes.font);
    }
    const double bezel = field.isBezeled() ? 3 : 0;
    if (field.isEditable())
        return { kNoNaturalLength, lineHeight(font) + 2 * bezel };
    if (field.maximumNumberOfLines() == 1)
        return { std::min(textWidth(field.stringValue(), font), widthLimit), lineHeight(font) };
    const std::vector<double> widths = lineWidths(field.stringValue(), font, widthLimit);
    return { *std::max_element(widths.begin(), widths.end()), static_cast<double>(widths.size()) * lineHeight(font) };
}

NSSize HeadlessWindows::naturalSize(const NSButton& button, double)
{
    if (button.imagePosition() == NSButton::ImagePosition::imageOnly)
        return button.image() ? button.image()->size() : NSSize {};
    const double width = textWidth(button.title(), scaled(button.font()));
    if (button.buttonType() == NSButton::ButtonType::switchButton)
        return { width + 20, 18 * textScale };
    return { width + 24, 24 * textScale };
}

NSSize HeadlessWindows::naturalSize(const NSPopUpButton& button)
{
    double widest = 0;
    for (const std::string& title : button.itemTitles())
        widest = std::max(widest, textWidth(title, scaled(button.font())));
    return { widest + 36, 24 * textScale };
}

} // namespace quillbox
