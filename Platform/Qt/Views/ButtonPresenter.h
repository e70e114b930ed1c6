#pragma once

#include "NSButton.h"
#include "ViewPresenter.h"

namespace quillbox {

// Shows a push button, a checkbox, or a button that consists of a picture only.
class ButtonPresenter final : public ViewPresenter {
public:
    ButtonPresenter(const std::shared_ptr<NSButton>& button, QWidget& parent);

protected:
    void showContent(NSView& view) override;
    bool suits(const NSView& view) const override;

private:
    enum class Kind { push, checkbox, picture };
    static Kind kindOf(const NSButton& button);
    static QWidget* makeWidget(const std::shared_ptr<NSButton>& button, QWidget& parent);

    Kind kind_;
};

} // namespace quillbox
