#pragma once

#include "NSTextField.h"
#include "ViewPresenter.h"

namespace quillbox {

// Shows a text: painted where it is only read, as SelectableText where it can be selected, as a line edit where it
// can be edited.
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
