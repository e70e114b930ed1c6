#pragma once

#include "CGColor.h"
#include "NSControl.h"

namespace quillbox {

// Text: a label, a text that can be selected, or one line that can be edited. The text wraps at the view's width. If it
// is limited to one line, it is cut off with an ellipsis; a line being edited scrolls.
class NSTextField : public NSControl {
public:
    // The selection in a field that has the keyboard focus. Its range counts bytes of the text.
    class Editor {
    public:
        NSRange selectedRange() const { return range_; }
        void setSelectedRange(NSRange range);
        // Counts the calls that set the selection; the display compares it.
        unsigned changeCount() const { return changeCount_; }

    private:
        friend class NSTextField;
        explicit Editor(NSTextField& field) : field_(field) { }
        NSTextField& field_;
        NSRange range_;
        unsigned changeCount_ = 0;
    };

    NSTextField() : editor_(*this) { }
    // Makes a label of one or more lines that can't be selected.
    static std::shared_ptr<NSTextField> label(std::string_view text);

    const char* className() const override { return "NSTextField"; }
    NSSize naturalSize(double widthLimit) const override;

    // The text without attributes.
    std::string stringValue() const { return text_.string(); }
    void setStringValue(std::string_view text);
    // Plain text is in the field's font throughout.
    const AttributedString& attributedStringValue() const { return text_; }
    void setAttributedStringValue(AttributedString text);

    bool isSelectable() const { return isSelectable_; }
    void setSelectable(bool selectable);
    bool isEditable() const { return isEditable_; }
    void setEditable(bool editable);
    bool isBezeled() const { return isBezeled_; }
    void setBezeled(bool bezeled);
    CGColor textColor() const { return textColor_; }
    void setTextColor(CGColor colour);
    // 0 means as many lines as the text needs.
    int maximumNumberOfLines() const { return maximumNumberOfLines_; }
    void setMaximumNumberOfLines(int count);
    // Meant for prose whose lines were broken for one width. In a paragraph that has a line too long for the field,
    // single line breaks count as spaces. A blank line ends a paragraph.
    bool reflowsParagraphs() const { return reflowsParagraphs_; }
    void setReflowsParagraphs(bool reflows);

    // Gives the field the keyboard focus and selects its whole text.
    void selectText();
    // Returns null while another view of the window has the keyboard focus.
    Editor* currentEditor();
    const Editor& editor() const { return editor_; }

    // The user or assistive technology changed the text, and the display shows it already. While a sheet blocks the
    // window, the field keeps its text and the display shows that again.
    void userEdits(const std::string& text);

private:
    AttributedString text_;
    bool isSelectable_ = false;
    bool isEditable_ = false;
    bool isBezeled_ = false;
    CGColor textColor_ = CGColor::label;
    int maximumNumberOfLines_ = 0;
    bool reflowsParagraphs_ = false;
    Editor editor_;
};

} // namespace quillbox
