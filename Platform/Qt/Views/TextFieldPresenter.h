#pragma once

#include "NSTextField.h"
#include "ViewPresenter.h"

namespace quillbox {

// Shows a text field: a label is painted, a selectable text is a SelectableText, and an editable one is a line edit.
class TextFieldPresenter final : public ViewPresenter {
public:
    TextFieldPresenter(const std::shared_ptr<NSTextField>& field, QWidget& parent);

protected:
    void showContent(NSView& view) override;
    void subviewsShown(NSView& view) override;
    bool suits(const NSView& view) const override;

private:
    enum class Kind { label, selectable, editable };
    static Kind kindOf(const NSTextField& field);
    static QWidget* makeWidget(const std::shared_ptr<NSTextField>& field, QWidget& parent);

    Kind kind_;
    unsigned shownSelection_ = 0;
};

} // namespace quillbox
