#include "NSTextField.h"

#include "Desktop.h"
#include "NSApplication.h"
#include "NSWindow.h"
#include "WindowDisplay.h"

namespace quillbox {

void NSTextField::Editor::setSelectedRange(NSRange range)
{
    range_ = range;
    ++changeCount_;
    field_.setNeedsDisplay();
}

std::shared_ptr<NSTextField> NSTextField::label(std::string_view text)
{
    auto field = std::make_shared<NSTextField>();
    field->setStringValue(text);
    return field;
}

NSSize NSTextField::naturalSize(double widthLimit) const
{
    return NSApplication::shared().desktop().windows().naturalSize(*this, widthLimit);
}

void NSTextField::setStringValue(std::string_view text)
{
    setAttributedStringValue(AttributedString(text));
}

void NSTextField::setAttributedStringValue(AttributedString text)
{
    text_ = std::move(text);
    naturalSizeDidChange();
}

void NSTextField::setSelectable(bool selectable)
{
    isSelectable_ = selectable;
    setNeedsDisplay();
}

void NSTextField::setEditable(bool editable)
{
    isEditable_ = editable;
    naturalSizeDidChange();
}

void NSTextField::setBezeled(bool bezeled)
{
    isBezeled_ = bezeled;
    naturalSizeDidChange();
}

void NSTextField::setTextColor(CGColor colour)
{
    textColor_ = colour;
    setNeedsDisplay();
}

void NSTextField::setMaximumNumberOfLines(int count)
{
    maximumNumberOfLines_ = count;
    naturalSizeDidChange();
}

void NSTextField::setReflowsParagraphs(bool reflows)
{
    reflowsParagraphs_ = reflows;
    naturalSizeDidChange();
}

void NSTextField::userEdits(const std::string& text)
{
    if (isHeld())
        setNeedsDisplay();
    else
        text_ = AttributedString(text);
}

void NSTextField::selectText()
{
    const auto shownIn = window();
    if (!shownIn)
        return;
    shownIn->makeFirstResponder(shared_from_this());
    editor_.setSelectedRange({ 0, stringValue().size() });
}

NSTextField::Editor* NSTextField::currentEditor()
{
    const auto shownIn = window();
    return shownIn && shownIn->firstResponder().get() == this ? &editor_ : nullptr;
}

} // namespace quillbox
